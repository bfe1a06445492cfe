#include "platform/desktop/launch_at_login.h"

#import <ServiceManagement/ServiceManagement.h>

namespace tessellar {

bool launchesAtLogin(const QString&) {
    @autoreleasepool {
        return SMAppService.mainAppService.status == SMAppServiceStatusEnabled;
    }
}

std::expected<void, QString> setLaunchesAtLogin(bool on, const QString&) {
    @autoreleasepool {
        SMAppService* service = SMAppService.mainAppService;
        NSError* error = nil;
        if (on ? [service registerAndReturnError:&error] : [service unregisterAndReturnError:&error])
            return {};
        return std::unexpected(QString::fromNSString(error.localizedDescription));
    }
}

} // namespace tessellar
