// bench-relay: measures the daemon against the simulated analyzer and the
// bare baseline relay in one harness, and prints the figures as a Markdown
// table. bench/run builds it and says what each figure means.
//
//   bench-relay BUILD_DIR [--quick]
#include <signal.h>

#include <cstdio>
#include <cstring>
#include <iostream>
#include <map>
#include <memory>
#include <stdexcept>
#include <thread>

#include "bench/relay/clients.h"
#include "bench/relay/figures.h"
#include "bench/relay/relays.h"

namespace {

const int kClientCounts[] = {1, 8, 32, 128};
const char kQuery[] = "<norvance><vela>&query;</vela></norvance>";
const char kSubscription[] = "<norvance><vela><cfg>&query_changes;</cfg></vela></norvance>";

struct Options {
    Programs programs;
    int runs = 3;
    double window_seconds = 4;  // of records at 40 a second, per point
    long fast_records = 10000;  // per point at the highest rate
    int latency_repeats = 20;
    long memory_records = 10000000;
    double memory_seconds = 420;
};

// Figures for the daemon [0] and the baseline [1].
struct CostFigures {
    Figure fixed_us[2], per_client_us[2], core_percent_32[2], rate_8[2];
    std::map<int, Figure> point_us[2];  // by client count
};

struct Results {
    CostFigures real_time, fastest;
    Figure lost_8;
    Figure idle_wake_us;
    Figure query_ms, write_ms, subscription_ms;
    Figure startup_listen_ms, startup_data_ms;
    Figure rss_start_kib, rss_32_kib;
    long memory_records = 0, memory_lost = 0;
    double memory_seconds = 0;
    long rss_first_kib = 0, rss_last_kib = 0;
    long first_chunk_records = 0;
    int line_length = 170;
};

// A write that changes cfg/temprange, which is kept in the settings file:
// each call gives the other of two values.
std::string TemprangeWrite() {
    static bool low = false;
    low = !low;
    return std::string("<norvance><vela><cfg><temprange>") + (low ? "low" : "high") +
           "</temprange></cfg></vela></norvance>";
}

void Require(bool condition, const char* what) {
    if (!condition) throw std::runtime_error(std::string("bench: ") + what);
}

// Waits until every client holds as many data records as the first and no
// more arrive for 50 ms: the relay has delivered all it had.
void WaitQuiet(const Clients& clients) {
    long last = -1;
    for (;;) {
        WaitFor([&] { return clients.FewestData() == clients.of(0).data.load(); }, 30);
        if (clients.of(0).data == last) return;
        last = clients.of(0).data;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
}

struct Window {
    double cpu_us_per_record;
    double records_per_second;
};

// CPU time of the relay per record while client 0 receives `records` more.
Window MeasureWindow(const Relay& relay, const Clients& clients, long records, double timeout) {
    const long first = clients.of(0).data;
    const std::int64_t cpu = relay.process().CpuNs();
    const auto start = Clock::now();
    Require(WaitFor([&] { return clients.of(0).data >= first + records; }, timeout),
            "the records stopped coming");
    const std::int64_t used = relay.process().CpuNs() - cpu;
    const double got = static_cast<double>(clients.of(0).data - first);
    return {used / got / 1000.0, got / SecondsSince(start)};
}

// CPU per record at 40 records a second over `window_seconds` of records,
// once the clients receive them.
Window RealTimeWindow(const Options& options, const Relay& relay, const Clients& clients) {
    Require(WaitFor([&] { return clients.FewestData() >= 2; }, 20), "no data records came");
    const long records = static_cast<long>(40 * options.window_seconds);
    return MeasureWindow(relay, clients, records, 3 * options.window_seconds);
}

void AddFit(CostFigures& figures, int who, const std::vector<double>& clients,
            const std::vector<double>& us) {
    for (std::size_t i = 0; i < clients.size(); ++i)
        figures.point_us[who][static_cast<int>(clients[i])].Add(us[i]);
    const LinearFit fit = FitLine(clients, us);
    figures.fixed_us[who].Add(fit.fixed);
    figures.per_client_us[who].Add(fit.per_x);
}

// Milliseconds from sending `request` on client 0 until `answered` holds;
// the time is that of the last answer line any client received.
double Latency(Clients& clients, const std::string& request,
               const std::function<bool()>& answered) {
    const std::int64_t sent = NowNs();
    clients.Send(0, request);
    if (!WaitFor(answered, 10)) throw std::runtime_error("bench: no answer to " + request);
    std::int64_t last = 0;
    for (int i = 0; i < clients.size(); ++i)
        last = std::max(last, clients.of(i).last_answer_ns.load());
    return (last - sent) / 1e6;
}

void MeasureLatencies(const Options& options, Clients& clients, Results& results) {
    for (int n = 0; n < options.latency_repeats; ++n) {
        const long acks = clients.of(0).acks;
        results.query_ms.Add(Latency(clients, kQuery, [&] { return clients.of(0).acks > acks; }));
    }
    for (int n = 0; n < options.latency_repeats; ++n) {
        const long acks = clients.of(0).acks;
        results.write_ms.Add(
            Latency(clients, TemprangeWrite(), [&] { return clients.of(0).acks > acks; }));
    }
    for (int i = 0; i < clients.size(); ++i) clients.Send(i, kSubscription);
    for (int n = 0; n < options.latency_repeats; ++n) {
        std::vector<long> before;
        for (int i = 0; i < clients.size(); ++i) before.push_back(clients.of(i).answers);
        results.subscription_ms.Add(Latency(clients, TemprangeWrite(), [&] {
            for (int i = 0; i < clients.size(); ++i)
                if (clients.of(i).answers <= before[i]) return false;
            return true;
        }));
    }
}

// The daemon at 40 records a second: start-up, CPU per record for each
// client count, memory, and the request latencies with 32 clients.
void DaemonRealTime(const Options& options, Results& results) {
    DaemonRelay relay(options.programs, NextPort(), false);
    {
        Clients first(relay.port(), 1, 20);
        results.startup_listen_ms.Add(SecondsSince(relay.started()) * 1000);
        Require(WaitFor([&] { return first.of(0).data >= 1; }, 30), "no data record came");
        results.startup_data_ms.Add(SecondsSince(relay.started()) * 1000);
        results.rss_start_kib.Add(static_cast<double>(relay.process().ResidentKiB()));
    }
    std::vector<double> counts, us;
    for (int count : kClientCounts) {
        Clients clients(relay.port(), count);
        const Window window = RealTimeWindow(options, relay, clients);
        counts.push_back(count);
        us.push_back(window.cpu_us_per_record);
        results.line_length =
            static_cast<int>(clients.of(0).data_bytes / std::max(1L, clients.of(0).data.load()));
        if (count != 32) continue;
        results.real_time.core_percent_32[0].Add(window.cpu_us_per_record * 40 / 1e4);
        results.rss_32_kib.Add(static_cast<double>(relay.process().ResidentKiB()));
        MeasureLatencies(options, clients, results);
    }
    AddFit(results.real_time, 0, counts, us);
}

// The baseline with no client only wakes and formats a line 40 times a
// second: the least any relay pays for a record on this machine.
void BaselineIdle(const Options& options, Results& results) {
    BaselineRelay idle(options.programs, NextPort(), 0, 40, results.line_length);
    const std::int64_t cpu = idle.process().CpuNs();
    std::this_thread::sleep_for(std::chrono::duration<double>(options.window_seconds));
    results.idle_wake_us.Add((idle.process().CpuNs() - cpu) / 1000.0 /
                             (40 * options.window_seconds));
}

void BaselineRealTime(const Options& options, Results& results) {
    BaselineIdle(options, results);
    std::vector<double> counts, us;
    for (int count : kClientCounts) {
        BaselineRelay relay(options.programs, NextPort(), count, 40, results.line_length);
        Clients clients(relay.port(), count);
        const Window window = RealTimeWindow(options, relay, clients);
        counts.push_back(count);
        us.push_back(window.cpu_us_per_record);
        if (count == 32)
            results.real_time.core_percent_32[1].Add(window.cpu_us_per_record * 40 / 1e4);
    }
    AddFit(results.real_time, 1, counts, us);
}

// Connects `count` clients to a daemon on the manual clock and plays two
// seconds of records, which also gets the data clock locked on a fresh
// daemon; returns once every client has them all.
std::unique_ptr<Clients> ReadyClients(DaemonRelay& relay, int count) {
    std::unique_ptr<Clients> clients(new Clients(relay.port(), count));
    // A record made before the daemon took a connection never reaches it.
    Require(WaitFor([&] { return clients->AllGreeted(); }, 20), "a client was not greeted");
    Require(relay.sim().Command("run 2000") == "ok", "the simulator refused to run");
    WaitQuiet(*clients);
    return clients;
}

// The daemon as fast as the simulator's manual clock plays: each client
// count gets `fast_records` records; none may be lost.
void DaemonFastest(const Options& options, Results& results) {
    DaemonRelay relay(options.programs, NextPort(), true);
    std::vector<double> counts, us;
    for (int count : kClientCounts) {
        const std::unique_ptr<Clients> ready = ReadyClients(relay, count);
        const Clients& clients = *ready;
        const long first = clients.FewestData();
        const std::int64_t cpu = relay.process().CpuNs();
        const std::int64_t start = NowNs();
        const std::string run = "run " + std::to_string(options.fast_records * 25);
        Require(relay.sim().Command(run) == "ok", "the simulator could not play the records");
        const long expected = first + options.fast_records;
        WaitFor([&] { return clients.FewestData() >= expected; }, 10);
        const double seconds = (clients.LastDataNs() - start) / 1e9;
        const std::int64_t used = relay.process().CpuNs() - cpu;
        const long lost = std::max(0L, expected - clients.FewestData());
        counts.push_back(count);
        us.push_back(used / 1000.0 / options.fast_records);
        if (count == 32) results.fastest.core_percent_32[0].Add(100.0 * used / 1e9 / seconds);
        if (count == 8) {
            results.fastest.rate_8[0].Add(options.fast_records / seconds);
            results.lost_8.Add(static_cast<double>(lost));
        }
    }
    AddFit(results.fastest, 0, counts, us);
}

void BaselineFastest(const Options& options, Results& results) {
    std::vector<double> counts, us;
    for (int count : kClientCounts) {
        BaselineRelay relay(options.programs, NextPort(), count, 0, results.line_length);
        Clients clients(relay.port(), count);
        Require(WaitFor([&] { return clients.FewestData() >= 100; }, 20), "no baseline records");
        const Window window = MeasureWindow(relay, clients, options.fast_records, 120);
        counts.push_back(count);
        us.push_back(window.cpu_us_per_record);
        if (count == 8) results.fastest.rate_8[1].Add(window.records_per_second);
    }
    AddFit(results.fastest, 1, counts, us);
}

// Resident memory of the daemon while records stream to one client at the
// highest rate, up to `memory_records` or `memory_seconds`.
void DaemonMemory(const Options& options, Results& results) {
    DaemonRelay relay(options.programs, NextPort(), true);
    const std::unique_ptr<Clients> ready = ReadyClients(relay, 1);
    const Clients& clients = *ready;
    const long chunk = std::min(options.memory_records, 100000L);
    const long first = clients.of(0).data;
    const auto start = Clock::now();
    while (results.memory_records + results.memory_lost < options.memory_records &&
           SecondsSince(start) < options.memory_seconds) {
        const long expected = clients.of(0).data + chunk;
        Require(relay.sim().Command("run " + std::to_string(chunk * 25)) == "ok",
                "the simulator could not play the records");
        WaitFor([&] { return clients.of(0).data >= expected; }, 10);
        results.memory_lost += std::max(0L, expected - clients.of(0).data);
        results.memory_records = clients.of(0).data - first;
        results.rss_last_kib = relay.process().ResidentKiB();
        if (!results.rss_first_kib) {
            results.rss_first_kib = results.rss_last_kib;
            results.first_chunk_records = results.memory_records;
        }
    }
    results.memory_seconds = SecondsSince(start);
}

std::string Ratio(const Figure& daemon, const Figure& baseline) {
    if (daemon.empty() || baseline.empty() || baseline.Median() == 0) return "-";
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", daemon.Median() / baseline.Median());
    return text;
}

void Row(const std::string& name, const std::string& daemon, const std::string& baseline = "-",
         const std::string& ratio = "-") {
    std::cout << "| " << name << " | " << daemon << " | " << baseline << " | " << ratio << " |\n";
}

void CostRows(const std::string& when, const CostFigures& f, bool core_percent_of_baseline) {
    for (int count : kClientCounts)
        Row("CPU per record, " + std::to_string(count) + " clients, " + when + " (us)",
            f.point_us[0].at(count).Text(1), f.point_us[1].at(count).Text(1),
            Ratio(f.point_us[0].at(count), f.point_us[1].at(count)));
    Row("CPU per record, fixed, " + when + " (us)", f.fixed_us[0].Text(2), f.fixed_us[1].Text(2),
        Ratio(f.fixed_us[0], f.fixed_us[1]));
    Row("CPU per record, per client, " + when + " (us)", f.per_client_us[0].Text(3),
        f.per_client_us[1].Text(3), Ratio(f.per_client_us[0], f.per_client_us[1]));
    Row("CPU with 32 clients, " + when + " (% of one core)", f.core_percent_32[0].Text(3),
        core_percent_of_baseline ? f.core_percent_32[1].Text(3) : "-",
        core_percent_of_baseline ? Ratio(f.core_percent_32[0], f.core_percent_32[1]) : "-");
}

void PrintTable(const Options& options, const Results& r) {
    std::cout << "| Figure | borealis | baseline | ratio |\n|---|---|---|---|\n";
    Row("CPU per record, no client: a wake-up and a formatted line, 40 records/s (us)", "-",
        r.idle_wake_us.Text(1));
    CostRows("40 records/s", r.real_time, true);
    CostRows("highest rate", r.fastest, false);
    Row("Highest rate to 8 clients (records/s)", r.fastest.rate_8[0].Text(0),
        r.fastest.rate_8[1].Text(0), Ratio(r.fastest.rate_8[0], r.fastest.rate_8[1]));
    Row("Records lost at that rate (of " + std::to_string(options.fast_records) + " each)",
        r.lost_8.Text(0));
    Row("Full-document query, 32 clients at 40/s (ms)", r.query_ms.Text(3));
    Row("One-element write, dispatch and save (ms)", r.write_ms.Text(3));
    Row("Subscription answers to 32 subscribers (ms)", r.subscription_ms.Text(3));
    Row("Start-up to listening (ms)", r.startup_listen_ms.Text(1));
    Row("Start-up to the first DATA line (ms)", r.startup_data_ms.Text(1));
    Row("Resident memory at start (KiB)", r.rss_start_kib.Text(0));
    Row("Resident memory with 32 clients (KiB)", r.rss_32_kib.Text(0));
    Row("Resident memory after " + std::to_string(r.first_chunk_records) + " records (KiB)",
        std::to_string(r.rss_first_kib));
    Row("Resident memory after " + std::to_string(r.memory_records) + " records (KiB)",
        std::to_string(r.rss_last_kib));
    std::cout << "\nData lines average " << r.line_length << " bytes; the baseline's are as long. "
              << r.memory_records << " records streamed in " << static_cast<long>(r.memory_seconds)
              << " s for the memory figures, " << r.memory_lost << " lost.\n";
}

Options ParseOptions(int argc, char** argv) {
    if (argc < 2) throw std::runtime_error("usage: bench-relay BUILD_DIR [--quick]");
    Options options;
    const std::string build = argv[1];
    options.programs = {build + "/borealis", build + "/sim/vela-sim",
                        build + "/bench/bench-baseline"};
    if (argc > 2 && std::strcmp(argv[2], "--quick") == 0) {
        options.runs = 1;
        options.window_seconds = 2;
        options.fast_records = 4000;
        options.latency_repeats = 5;
        options.memory_records = 200000;
        options.memory_seconds = 20;
    }
    return options;
}

void Step(const char* what) {
    static const auto start = Clock::now();
    std::cerr << "bench-relay: " << static_cast<int>(SecondsSince(start)) << " s: " << what
              << std::endl;
}

}  // namespace

int main(int argc, char** argv) {
    signal(SIGPIPE, SIG_IGN);
    try {
        const Options options = ParseOptions(argc, argv);
        Results results;
        for (int run = 1; run <= options.runs; ++run) {
            std::cerr << "bench-relay: run " << run << " of " << options.runs << std::endl;
            Step("daemon at 40 records/s");
            DaemonRealTime(options, results);
            Step("baseline at 40 records/s");
            BaselineRealTime(options, results);
            Step("daemon at the highest rate");
            DaemonFastest(options, results);
            Step("baseline at the highest rate");
            BaselineFastest(options, results);
        }
        Step("daemon memory over many records");
        DaemonMemory(options, results);
        PrintTable(options, results);
    } catch (const std::exception& error) {
        std::cerr << error.what() << std::endl;
        return 1;
    }
}
