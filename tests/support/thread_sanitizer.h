#pragma once

// What the thread sanitizer asks of a program; for one file of each.

#include <cstdarg>

#ifdef __SANITIZE_THREAD__
/// Qt is not built with the sanitizer, which therefore sees neither its locks nor its waits: what Qt's
/// threads hand to one another, and what is posted to them, looks like a race.
extern "C" const char* __tsan_default_suppressions() {
    return "called_from_lib:libQt6Core.so\n"
           "called_from_lib:libQt6DBus.so\n"
           "called_from_lib:libQt6Gui.so\n"
           "called_from_lib:libQt6Network.so\n"
           "called_from_lib:libQt6Qml.so\n"
           "called_from_lib:libQt6Quick.so\n"
           "called_from_lib:libdbus-1.so\n" // so it is with these three, beneath Qt
           "called_from_lib:libfontconfig.so\n"
           "called_from_lib:libglib-2.0.so\n"
           "race:QEvent::type\n"
           "race:QMap<*>::take\n" // looks at its count of references without a fence
           "race:tessellar::test::MemorySettings::set\n" // whose map's removal does the same
           "race:tessellar::NetworkHttpClient::~NetworkHttpClient\n";
}

#ifdef __linux__
extern "C" int __clone(int (*)(void*), void*, int, void*, ...) noexcept;

/// Stands before the sanitizer's own, which takes every clone for a fork. QProcess's child shares this
/// memory until it runs its program: the fork's end would be counted in both of them, after which the
/// sanitizer sees neither this thread's locks nor the races it runs into.
extern "C" int clone(int (*function)(void*), void* stack, int flags, void* argument, ...) noexcept {
    va_list rest;
    va_start(rest, argument);
    void* const parentId = va_arg(rest, void*);
    void* const threadStorage = va_arg(rest, void*);
    void* const childId = va_arg(rest, void*);
    va_end(rest);
    return __clone(function, stack, flags, argument, parentId, threadStorage, childId);
}
#endif
#endif
