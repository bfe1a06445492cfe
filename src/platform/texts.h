#pragma once

#include <QCoreApplication>

namespace tessellar {

/// The texts that people read. `tr` gives one in their language; a table holds `noop` of it, which
/// lupdate finds as well, and gives it to `tr` where it is shown.
struct Texts {
    Q_DECLARE_TR_FUNCTIONS(Texts)
public:
    static constexpr const char* noop(const char* text, const char* /*comment*/ = nullptr) {
        return text;
    }
};

} // namespace tessellar
