// The in-process steps that every record or request pays, timed one at a
// time: formatting a data line, its checksum, the averaging step, the CH4
// correction factor and queries over the configuration document.
#include <benchmark/benchmark.h>
#include <sys/socket.h>
#include <unistd.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "borealis/config/correction_factor.h"
#include "borealis/config/doc4410.h"
#include "borealis/hub/data_pipeline.h"
#include "borealis/hub/record_line.h"
#include "common/poll_processor.h"

namespace {

DSPDataRecord TypicalRecord(unsigned n) {
    DSPDataRecord record;
    record.msec = 1000 + 25 * n;
    const float typical[DSPDataRecord::VALUE_COUNT] = {
        0.0834f, 2.005f, 19.998f, 101.302f, 60, 0, 0, 0, 0, 0, 0, 0, 0, 0, 20.01f, 19.99f, 20.02f};
    for (int i = 0; i < DSPDataRecord::VALUE_COUNT; ++i)
        record.values[i] = typical[i] * (1 + 1e-4f * static_cast<float>(n % 7));
    return record;
}

std::string FormatDataLine(const DSPDataRecord& record) {
    RecordLine line("DATA");
    line.Int(record.msec).Int(1767225600 + record.msec / 1000).Int(record.msec % 1000 * 1000000);
    line.Int(record.diag);
    for (float value : record.values) line.Float(value);
    return line.Finish();
}

void FormatDataRecord(benchmark::State& state) {
    const DSPDataRecord record = TypicalRecord(3);
    for (auto _ : state) benchmark::DoNotOptimize(FormatDataLine(record));
}
BENCHMARK(FormatDataRecord);

void ChecksumOfDataLine(benchmark::State& state) {
    const std::string line = FormatDataLine(TypicalRecord(3));
    for (auto _ : state) benchmark::DoNotOptimize(Checksum(line));
}
BENCHMARK(ChecksumOfDataLine);

// The argument is the averaging count: 1 at 40 lines a second, 40 at one.
void AveragingStep(benchmark::State& state) {
    DataPipeline pipeline;
    pipeline.SetRate(static_cast<int>(40 / state.range(0)));
    unsigned n = 0;
    for (auto _ : state) {
        DSPDataRecord record = TypicalRecord(++n);
        pipeline.ScaleAndAverage(record, 0, 1);
        benchmark::DoNotOptimize(record);
    }
}
BENCHMARK(AveragingStep)->Arg(1)->Arg(40);

void CorrectionFactorLookup(benchmark::State& state) {
    float temperature = 19.5f;
    for (auto _ : state) {
        temperature = temperature > 25 ? 19.5f : temperature + 0.01f;
        benchmark::DoNotOptimize(CorrectionFactor(temperature, 101.3f));
    }
}
BENCHMARK(CorrectionFactorLookup);

void Query(benchmark::State& state, const char* request) {
    Doc4410 doc;
    for (auto _ : state) {
        std::istringstream in(request);
        std::ostringstream out;
        Configurable::set_compact(out);
        doc.process(in, out);
        benchmark::DoNotOptimize(out.str());
    }
}
BENCHMARK_CAPTURE(Query, whole_document, "<norvance><vela>&query;</vela></norvance>");
BENCHMARK_CAPTURE(Query, one_element,
                  "<norvance><vela><cfg><temprange>&query;</temprange></cfg></vela></norvance>");

// A socket always ready for writing, as every client is after a record.
struct WritableSocket : PollItem {
    int fds[2] = {-1, -1};
    WritableSocket() : PollItem(POLLOUT) { socketpair(AF_UNIX, SOCK_STREAM, 0, fds); }
    ~WritableSocket() override {
        close(fds[0]);
        close(fds[1]);
    }
    int GetFd() override { return fds[0]; }
};

// One loop iteration with every one of `clients` sockets ready: the poll
// and the dispatch of each ready descriptor to its item.
void PollDispatch(benchmark::State& state) {
    std::vector<std::unique_ptr<WritableSocket>> sockets;
    for (int i = 0; i < state.range(0); ++i) sockets.emplace_back(new WritableSocket);
    for (auto _ : state) PollProcessor::Instance().Poll(0);
    state.SetComplexityN(state.range(0));
}
BENCHMARK(PollDispatch)->Arg(8)->Arg(32)->Arg(128)->Arg(512)->Complexity();

}  // namespace

BENCHMARK_MAIN();
