#pragma once

#include "platform/calendar.h"
#include "smartfolders/smart_folder_definition.h"
#include "smartfolders/smart_folder_evaluation.h"

#include <stop_token>

namespace tessellar {

class FileSystem;
class SmartFolderFactsIndex;

/// Evaluates definitions. Pure, except that it checks whether applications of a legacy import exist. A
/// definition with validation issues matches nothing. Thread-safe.
class SmartFolderEvaluator {
public:
    explicit SmartFolderEvaluator(const FileSystem& files) : _files(files) {}

    SmartFolderEvaluation evaluate(const SmartFolderDefinition& definition,
                                   const SmartFolderFactsList& facts, const Locale& locale, Instant now,
                                   const Calendar& calendar) const;

    /// For evaluating many definitions over one list, whose facts are then prepared once.
    static SmartFolderEvaluation evaluate(const SmartFolderDefinition& definition,
                                          const SmartFolderFactsIndex& index, Instant now,
                                          const Calendar& calendar, const std::stop_token& stop = {});

    /// One result per definition. After a stop, the remaining ones are empty.
    static QList<SmartFolderEvaluation> evaluateAll(const QList<SmartFolderDefinition>& definitions,
                                                    const SmartFolderFactsIndex& index, Instant now,
                                                    const Calendar& calendar,
                                                    const std::stop_token& stop = {});

private:
    const FileSystem& _files;
};

} // namespace tessellar
