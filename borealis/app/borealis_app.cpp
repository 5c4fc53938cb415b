#include "borealis/app/borealis_app.h"

#include <sched.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>

#include "borealis/hub/borealis.h"
#include "borealis/platform/platform.h"
#include "borealis/version.h"
#include "common/errno_error.h"
#include "common/syslog_stream.h"

const std::string kBorealisHelp = std::string("borealis ") + kBorealisVersion + "\n" +
                                  "usage: borealis [options]\n"
                                  "\n"
                                  "  -h   Show this help\n"
                                  "  -b   Run in the background (as a daemon)\n"
                                  "  -t   Run as a real-time process (superuser only)\n"
                                  "  -s   Reroute stdout to syslog (daemon does this too)\n"
                                  "  -k   Kill borealis\n"
                                  "  -r   Reread configuration file\n"
                                  "  -d   Debug mode: output lots of debug info\n"
                                  "  -z   Don't adjust the clock_yz register\n"
                                  "\n";

BorealisApp::BorealisApp(Platform& platform)
    : DaemonApp(platform.Path("/var/run/borealis.pid")), platform_(platform) {}

bool BorealisApp::parse_options(int argc, char* argv[], int& exit_code) {
    optind = 1;
    for (int option; (option = ::getopt(argc, argv, "tkbhrasdzx")) != -1;) {
        switch (option) {
        case 't': realtime_ = true; break;
        case 'b': daemon_ = use_syslog_ = true; break;
        case 's': use_syslog_ = true; break;
        case 'd': debug_ = true; break;
        case 'z': no_clock_adjust_ = true; break;
        case 'h':
            std::cout << kBorealisHelp;
            exit_code = 0;
            return false;
        case 'k': exit_code = shutdown() ? 0 : -1; return false;
        case 'r': exit_code = readconfig() ? 0 : -1; return false;
        default:  // -a, -x and unknown options (getopt has complained)
            break;
        }
    }
    return true;
}

bool BorealisApp::signal_daemon(int number, const char* operation) {
    try {
        send_signal(number);
        return true;
    } catch (const std::exception& e) {
        std::cout << operation << ": Got exception: " << e.what() << std::endl;
        return false;
    }
}

bool BorealisApp::shutdown() { return signal_daemon(SIGINT, "shutdown"); }

bool BorealisApp::readconfig() { return signal_daemon(SIGUSR1, "readconfig"); }

void BorealisApp::reroute_output_to_syslog() {
    // The buffers live until the process ends, as long as the streams use them.
    for (std::ostream* stream : {&std::cout, &std::cerr, &std::clog}) {
        try {
            stream->rdbuf(new syslogbuf());
        } catch (const std::exception& e) {
            std::printf("basic_syslogbuf: Exception setting identity '%s'\n", e.what());
        }
    }
}

int BorealisApp::run(int argc, char* argv[]) {
    catch_signal(received_signals(), SIGINT);
    // A client that resets its connection must end only that client (its
    // write fails with EPIPE), never the daemon.
    ignore_signal(received_signals(), SIGPIPE);

    int exit_code = 0;
    if (!parse_options(argc, argv, exit_code)) return exit_code;

    if (daemon_) {
        try {
            if (!daemon_init()) return 0;
        } catch (const std::exception& e) {
            std::cout << "Moord: Got daemon_init exception: " << e.what() << std::endl;
            return -1;
        }
    }
    if (use_syslog_) reroute_output_to_syslog();

    create_pid_file();
    if (realtime_) set_real_time_priority();

    Borealis hub(platform_, debug_, no_clock_adjust_);
    hub.Run();
    return 0;
}

void set_real_time_priority() {
    struct sched_param param = {};
    param.sched_priority = sched_get_priority_min(SCHED_FIFO);
    if (sched_setscheduler(0, SCHED_FIFO, &param) != 0)
        throw ErrnoError("set_real_time_priority: Unable to set real-time priority");
    if (mlockall(MCL_CURRENT | MCL_FUTURE) != 0)
        throw ErrnoError("set_real_time_priority: Unable to lock memory pages");
}
