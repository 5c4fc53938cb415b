#ifndef TESTS_E2E_SCENARIO_RUNNER_H
#define TESTS_E2E_SCENARIO_RUNNER_H

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/analyzer.h"
#include "tests/support/line_client.h"
#include "tests/support/temp_root.h"

// Plays one scenario of the end-to-end corpus: vela-sim with its manual
// clock under a root and port of their own, the daemon after it, and the
// scenario's steps, one a line. Writes what each reading client and the
// daemon's output received at each step as a transcript. After every step
// it waits for a barrier (a processor message that the daemon passes on
// after everything it did before), so the transcript never depends on
// timing.
class ScenarioRunner {
public:
    ScenarioRunner();
    ~ScenarioRunner();
    ScenarioRunner(const ScenarioRunner&) = delete;
    ScenarioRunner& operator=(const ScenarioRunner&) = delete;

    // Runs the steps of `scenario` and returns the transcript. A step that
    // cannot be carried out ends the run and is reported in Problems().
    std::string Run(const std::string& scenario);
    // What made the run unsound: a step that failed, a barrier that did
    // not come, a record line with a wrong checksum. Empty when all is well.
    const std::vector<std::string>& Problems() const { return problems_; }

private:
    struct Reader {
        std::string name;
        bool summary;  // record lines counted per type instead of listed
        std::unique_ptr<LineClient> client;
        // What arrived in this step, for the transcript.
        std::vector<std::string> lines;
        std::vector<std::pair<std::string, int>> record_counts;  // summary: per type, in order seen
        bool closed_now = false;                                 // the daemon closed the connection
    };

    void Step(const std::string& step);
    void Sim(const std::string& command);
    // Waits until the interface box has read the last barrier, so that its
    // listing holds everything the daemon sent it before.
    void AwaitBoxBarrier();
    void File(const std::string& arguments);
    void Show(const std::string& path);
    void Remove(const std::string& path);
    void Daemon(const std::string& arguments);
    void StartDaemon(const std::vector<std::string>& options);
    void StopDaemon();
    void ShowExit(int status);
    void SignalDaemon(const std::string& name);
    void Client(const std::string& arguments);
    void ClientAction(Reader& reader, const std::string& action);
    void AwaitRequestRead(Reader& reader);
    void AwaitClosedByDaemon(unsigned short client_port);

    bool DaemonRunning();
    // Waits for the barrier on every reading client and on the daemon's
    // output, and writes what came before it into the transcript.
    void Settle();
    // Reads `reader` up to the line `mark`; to its end when `mark` is empty.
    void ReadUpTo(Reader& reader, const std::string& mark);
    void Take(Reader& reader, const std::string& line);
    // Takes the daemon's output up to the line `mark`; all of it when
    // `mark` is empty.
    void DaemonOutputUpTo(const std::string& mark);
    Reader* Find(const std::string& name);

    TempRoot root_;
    const unsigned short port_;
    std::unique_ptr<SimulatedAnalyzer> sim_;
    std::unique_ptr<DaemonUnderTest> daemon_;
    std::size_t daemon_output_taken_ = 0;
    bool exit_shown_ = false;   // the exit of the daemon started last is in the transcript
    std::string daemon_lines_;  // this step's, for the transcript
    std::vector<Reader> readers_;
    int marks_ = 0;
    bool box_connected_ = false;  // the simulator's interface box, by the steps that connect it
    std::ostringstream transcript_;
    std::vector<std::string> problems_;
};

#endif
