#include <iostream>

#include "borealis/app/borealis_app.h"
#include "borealis/platform/platform.h"
#include "borealis/platform/sim_syslog.h"
#include "common/syslog_stream.h"

int main(int argc, char* argv[]) {
    try {
        SysLog::Instance().SetIdentity("borealis");
        Platform& platform = Platform::Get();
        if (platform.IsSimulated())
            SysLog::Instance().SetWriter(SimSyslogWriter(platform.Path("/dev/log"), "borealis"));
        int result;
        {
            BorealisApp app(platform.Path("/var/run/borealis.pid"));
            result = app.run(argc, argv);
        }
        return result;
    } catch (const std::exception& e) {
        std::cout << "ERROR: " << e.what() << std::endl;
    } catch (const char* text) {
        std::cout << "ERROR: " << text << std::endl;
    } catch (...) {
        std::cout << "ERROR" << std::endl;
    }
    return -1;
}
