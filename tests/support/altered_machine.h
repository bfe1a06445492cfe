#pragma once

#include "platform/machine.h"

namespace tessellar::test {

/// Parts that a machine is to have in place of another's.
struct OtherParts {
    Scheduler* scheduler = nullptr;
    CommandRunner* commands = nullptr;
    HttpClient* http = nullptr;
};

/// A machine of the same parts but for these.
inline Machine altered(const Machine& machine, const OtherParts& other) {
    return {.files = machine.files,
            .places = machine.places,
            .clock = machine.clock,
            .scheduler = other.scheduler ? *other.scheduler : machine.scheduler,
            .workers = machine.workers,
            .commands = other.commands ? *other.commands : machine.commands,
            .http = other.http ? *other.http : machine.http,
            .settings = machine.settings,
            .uuids = machine.uuids,
            .log = machine.log,
            .locale = machine.locale,
            .environment = machine.environment};
}

} // namespace tessellar::test
