#ifndef BOREALIS_HUB_CLIENT_SESSIONS_H
#define BOREALIS_HUB_CLIENT_SESSIONS_H

#include <cstdint>
#include <functional>
#include <list>
#include <string>
#include <utility>

class ClientFanout;
class Doc4410;
class MeasurementRecords;
class Platform;
class SocketClient;
struct InterfaceBox;

// The hub's side of every client connection: the greeting, the message
// classification, XML requests read into the document and answered on one
// line, standing change subscriptions, and each client's private choice of
// record streams.
class ClientSessions {
public:
    // Subscriptions one client may hold; every change is answered for each,
    // so a client holding more is closed. No real client needs more than a
    // few.
    static constexpr std::size_t kMostSubscriptions = 1000;

    // Handles a line that is not XML (a text command).
    typedef std::function<void(SocketClient*, const std::string&)> CommandHandler;

    ClientSessions(const Platform& platform, Doc4410& doc, ClientFanout& fanout,
                   MeasurementRecords& records, const InterfaceBox& box, bool debug);

    void SetCommandHandler(CommandHandler handler) { command_handler_ = std::move(handler); }

    // A new client: its context and the greeting.
    void Greet(SocketClient* client);
    // A client is going away: its subscriptions go with it.
    void Forget(SocketClient* client);
    // One line from a client. Errors are printed and the connection stays
    // open; the client gets no answer then.
    void HandleMessage(SocketClient* client, const std::string& message);
    // Announces what changed in the document since the last time: the
    // CONFIGCHANGED event and every subscription's answer; then forgets the
    // changes.
    void NotifyConfigChanged();

    // One XML request read into the document and answered.
    void HandleXMLRequest(SocketClient* client, const std::string& request);
    // One run of a change subscription.
    void AnswerSubscription(SocketClient* client, const std::string& request);

    std::size_t SubscriptionCount() const { return subscriptions_.size(); }
    // The client whose line is being handled; null outside a line.
    SocketClient* CurrentClient() const { return current_client_; }

private:
    void HandleLine(SocketClient* client, const std::string& message);
    void Classify(SocketClient* client, const std::string& message);
    void Subscribe(SocketClient* client, const std::string& message);
    void RefreshClock(std::int64_t now);
    void RefreshAddress(std::int64_t now);
    void MirrorSelection(std::uint32_t outputs);
    std::string TakeSelection(std::uint32_t& outputs);

    const Platform& platform_;
    Doc4410& doc_;
    ClientFanout& fanout_;
    MeasurementRecords& records_;
    const InterfaceBox& box_;
    const bool debug_;
    CommandHandler command_handler_;
    std::list<std::pair<SocketClient*, std::string>> subscriptions_;
    std::int64_t last_address_refresh_ = 0;
    SocketClient* current_client_ = nullptr;
};

#endif
