#include "borealis/hub/client_sessions.h"

#include <sys/time.h>

#include <iostream>
#include <sstream>

#include "borealis/config/doc4410.h"
#include "borealis/hub/answer_stream.h"
#include "borealis/hub/client_fanout.h"
#include "borealis/hub/interface_box.h"
#include "borealis/hub/measurement_records.h"
#include "borealis/hub/socket_context.h"
#include "borealis/platform/platform.h"
#include "borealis/system/interface_status.h"
#include "borealis/version.h"
#include "common/errno_error.h"
#include "common/socket_server.h"

namespace {

// The document's output elements that mirror the served client's streams,
// in bit order.
ConfigurableBool* SelectionElement(ConfigOutput& output, int bit) {
    ConfigurableBool* elements[] = {&output.status, &output.waveforms, &output.dataclock,
                                    &output.dataclocksync};
    return elements[bit];
}

std::int64_t WallClockSeconds() {
    struct timeval now;
    if (::gettimeofday(&now, nullptr) != 0) throw ErrnoError("Unable to get current time");
    return now.tv_sec;
}

}  // namespace

ClientSessions::ClientSessions(const Platform& platform, Doc4410& doc, ClientFanout& fanout,
                               MeasurementRecords& records, const InterfaceBox& box, bool debug)
    : platform_(platform),
      doc_(doc),
      fanout_(fanout),
      records_(records),
      box_(box),
      debug_(debug) {}

void ClientSessions::Greet(SocketClient* client) {
    client->SetContext(boost::shared_ptr<SocketClientContext>(new BorealisSocketContext));
    std::ostringstream text;
    text << "DATAEVENT\tMODEL\tVELA\n"
         << "DATAEVENT\tVERSION\t" << kBorealisVersion << "\n"
         << "DATAEVENT\tNAME\t" << GetHostName() << "\n"
         << "DATAEVENT\tSN\t" << doc_.vela.factory.serialnumber.value() << "\n"
         << box_.EventLine();
    records_.SendDataHeaders(text);
    fanout_.SendToClient(client, text.str(), SendLimit::ANSWER);
}

void ClientSessions::Forget(SocketClient* client) {
    subscriptions_.remove_if([client](const auto& entry) { return entry.first == client; });
}

void ClientSessions::HandleMessage(SocketClient* client, const std::string& message) {
    current_client_ = client;
    HandleLine(client, message);
    current_client_ = nullptr;
}

void ClientSessions::HandleLine(SocketClient* client, const std::string& message) {
    try {
        NotifyConfigChanged();
        if (message.empty()) return;
        Classify(client, message);
        NotifyConfigChanged();
    } catch (const AnswerTooLong& e) {
        // Not the request itself: it may be a megabyte long.
        std::cout << "GotRequest: " << e.what() << "; not sent" << std::endl;
    } catch (const std::exception&) {
        std::cout << "GotRequest: Error with request: " << message << std::endl;
    } catch (...) {
        std::cout << "GotRequest: Error with request" << std::endl;
    }
}

void ClientSessions::Classify(SocketClient* client, const std::string& message) {
    if (message[0] != '<' && message[0] != '&') {
        if (command_handler_) command_handler_(client, message);
    } else if (message.find("&query_changes") != std::string::npos) {
        Subscribe(client, message);
    } else {
        HandleXMLRequest(client, message);
    }
}

void ClientSessions::Subscribe(SocketClient* client, const std::string& message) {
    BorealisSocketContext* context = ContextOf(client);
    if (context && context->subscriptions == kMostSubscriptions) {
        client->CloseForAbuse("more than " + std::to_string(kMostSubscriptions) + " subscriptions");
        return;
    }
    if (context) ++context->subscriptions;
    subscriptions_.emplace_back(client, message);
}

void ClientSessions::NotifyConfigChanged() {
    if (!doc_.has_changed()) return;
    if (doc_.HasVisibleChange()) fanout_.SendToAll("DATAEVENT\tCONFIGCHANGED\n", SendLimit::ANSWER);
    for (const auto& entry : subscriptions_) {
        if (!entry.first->IsOpen()) continue;
        // A subscription that cannot be answered must not stop the others,
        // nor the change that some other client or the daemon itself made.
        try {
            AnswerSubscription(entry.first, entry.second);
        } catch (const std::exception& e) {
            std::cout << "AnswerSubscription: Error with request: " << e.what() << std::endl;
        }
    }
    doc_.set_changed(false);
}

void ClientSessions::HandleXMLRequest(SocketClient* client, const std::string& request) {
    if (debug_) std::cout << "XML Request: " << request << std::flush;
    const std::int64_t now = WallClockSeconds();
    RefreshClock(now);
    RefreshAddress(now);
    BorealisSocketContext* context = ContextOf(client);
    std::uint32_t outputs = context ? context->outputs : 0;
    MirrorSelection(outputs);

    AnswerStream answer(SendLimit::ANSWER);
    Configurable::set_compact(answer);
    std::istringstream in(request);
    doc_.ReadAndDispatch(in, answer);
    answer << "\n" << doc_.vela.ack << "\n" << TakeSelection(outputs);
    if (context) context->outputs = outputs;

    if (debug_) std::cout << "XML Response: " << answer.str() << std::flush;
    fanout_.SendToClient(client, answer.str(), SendLimit::ANSWER);
}

// The clock elements always show the analyzer's time, but refreshing them is
// not a change anybody made.
void ClientSessions::RefreshClock(std::int64_t now) {
    ConfigCfg& cfg = doc_.vela.cfg;
    const bool cfg_was_changed = cfg.has_changed();
    cfg.clock.SetFromTime(now);
    if (cfg_was_changed)
        cfg.clock.set_changed(false);
    else
        cfg.set_changed(false);
}

void ClientSessions::RefreshAddress(std::int64_t now) {
    // Unsigned, so that a clock stepped backwards refreshes too.
    if (static_cast<std::uint32_t>(now - last_address_refresh_) <= 14) return;
    doc_.vela.ipaddress.set(NetworkInterfaceInfo(platform_, "br0").address.ToString());
    last_address_refresh_ = now;
}

void ClientSessions::MirrorSelection(std::uint32_t outputs) {
    for (int bit = 0; bit < 4; ++bit)
        SelectionElement(doc_.vela.output, bit)->set((outputs >> bit) & 1);
}

// Takes the served client's streams back from the document; returns the
// headers of the streams it switched on.
std::string ClientSessions::TakeSelection(std::uint32_t& outputs) {
    std::ostringstream headers;
    for (int bit = 0; bit < 4; ++bit) {
        const std::uint32_t mask = 1u << bit;
        if (!SelectionElement(doc_.vela.output, bit)->value()) {
            outputs &= ~mask;
            continue;
        }
        if (outputs & mask) continue;
        outputs |= mask;
        if (mask == OutputBit::STATUS) records_.SendStatusHeader(headers);
        if (mask == OutputBit::DATACLOCK) records_.SendClockHeader(headers);
        if (mask == OutputBit::DATACLOCKSYNC) records_.SendClockSyncHeader(headers);
    }
    return headers.str();
}

void ClientSessions::AnswerSubscription(SocketClient* client, const std::string& request) {
    if (debug_) std::cout << "XML Listener Request: " << request << std::flush;
    ConfigOutput& output = doc_.vela.output;
    for (int bit = 0; bit < 4; ++bit) SelectionElement(output, bit)->set_changed(false);

    AnswerStream answer(SendLimit::ANSWER);
    Configurable::set_compact(answer);
    std::istringstream in(request);
    doc_.process(in, answer);
    if (answer.str().empty()) return;
    answer << "\n";
    if (debug_) std::cout << "XML Listener Response: " << answer.str() << std::flush;
    fanout_.SendToClient(client, answer.str(), SendLimit::ANSWER);
}
