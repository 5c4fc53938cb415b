#include <iostream>
#include <memory>

#include "borealis/app/borealis_app.h"
#include "borealis/platform/platform.h"
#include "common/syslog_stream.h"

int main(int argc, char* argv[]) {
    try {
        SysLog::Instance().SetIdentity("borealis");
        const std::unique_ptr<Platform> platform = Platform::FromEnvironment();
        platform->RouteSyslog(SysLog::Instance());
        int result;
        {
            BorealisApp app(*platform);
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
