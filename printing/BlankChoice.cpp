#include "printing/BlankChoice.h"

BlankChoice chooseBlank(const BlankList& blanks, const QString& wanted)
{
    if (blanks.isEmpty()) {
        return {QVariant(), BlankChoice::Problem::NoBlanks};
    }
    if (wanted.isEmpty()) {
        return {blanks.first().second, BlankChoice::Problem::None};
    }
    for (const auto& [name, id] : blanks) {
        if (id.toString() == wanted) {
            return {id, BlankChoice::Problem::None};
        }
    }
    for (const auto& [name, id] : blanks) {
        if (name == wanted) {
            return {id, BlankChoice::Problem::None};
        }
    }
    return {QVariant(), BlankChoice::Problem::NoSuchBlank};
}
