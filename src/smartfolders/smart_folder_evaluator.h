#pragma once

#include "platform/calendar.h"
#include "smartfolders/smart_folder_definition.h"
#include "smartfolders/smart_folder_evaluation.h"

#include <stop_token>

namespace tessellar {

class FileSystem;
class SmartFolderFactsIndex;

/// Evaluates definitions: a pure function of its arguments, apart from asking whether the applications
/// of a legacy import exist. A definition with validation issues shows nothing. Any thread.
class SmartFolderEvaluator {
public:
    explicit SmartFolderEvaluator(const FileSystem& files) : _files(files) {}

    SmartFolderEvaluation evaluate(const SmartFolderDefinition& definition,
                                   const SmartFolderFactsList& facts, const Locale& locale, Instant now,
                                   const Calendar& calendar) const;

    /// The same for many definitions over one list, whose facts are then made ready once.
    static SmartFolderEvaluation evaluate(const SmartFolderDefinition& definition,
                                          const SmartFolderFactsIndex& index, Instant now,
                                          const Calendar& calendar, const std::stop_token& stop = {});

    /// Of each definition. After a stop those left over show nothing.
    static QList<SmartFolderEvaluation> evaluateAll(const QList<SmartFolderDefinition>& definitions,
                                                    const SmartFolderFactsIndex& index, Instant now,
                                                    const Calendar& calendar,
                                                    const std::stop_token& stop = {});

private:
    const FileSystem& _files;
};

} // namespace tessellar
