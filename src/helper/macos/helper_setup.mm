// TessellarHelperSetup: registers the removal helper with launchd, or reports its status. The launcher
// runs it with one word and reads the one that it prints; see cleanup's HelperSetupBroker.
//
//     TessellarHelperSetup status|register|unregister
//
// A program of its own inside the bundle, because ServiceManagement looks for the daemon's property list
// in the calling program's bundle, and so that the launcher itself never has the right to register one.
// Compiled against declarations only; never run.

#import <ServiceManagement/ServiceManagement.h>

#include <cstdio>
#include <string_view>

namespace {

const char* wordOf(SMAppServiceStatus status) {
    switch (status) {
    case SMAppServiceStatusEnabled:
        return "enabled";
    case SMAppServiceStatusRequiresApproval:
        return "requiresApproval";
    case SMAppServiceStatusNotRegistered:
        return "notRegistered";
    case SMAppServiceStatusNotFound:
        return "notFound";
    }
    return "unknown";
}

} // namespace

int main(int count, char** words) {
    @autoreleasepool {
        const std::string_view word = count == 2 ? words[1] : "";
        SMAppService* service =
            [SMAppService daemonServiceWithPlistName:@"com.tessellar.app.removal-helper.plist"];
        NSError* error = nil;
        BOOL isDone = YES;
        if (word == "register")
            isDone = [service registerAndReturnError:&error];
        else if (word == "unregister")
            isDone = [service unregisterAndReturnError:&error];
        else if (word != "status")
            return 2;
        // A registration that awaits the user's approval is reported as an error, too.
        if (!isDone && service.status != SMAppServiceStatusRequiresApproval) {
            std::fprintf(stderr, "%s\n", error.localizedDescription.UTF8String);
            return 1;
        }
        std::puts(wordOf(service.status));
        return 0;
    }
}
