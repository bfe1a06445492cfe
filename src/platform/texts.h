#pragma once

#include <QCoreApplication>

namespace tessellar {

/// Text for users. `tr` translates; `noop` marks a text in a table for lupdate, to be passed to `tr`
/// when shown.
struct Texts {
    Q_DECLARE_TR_FUNCTIONS(Texts)
public:
    static constexpr const char* noop(const char* text, const char* /*comment*/ = nullptr) {
        return text;
    }
};

} // namespace tessellar
