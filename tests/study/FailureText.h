#pragma once

#include "base/Error.h"

/// The text of the TError that `action` throws, empty if it throws none.
template <typename TAction> QString failureText(TAction&& action)
{
    try {
        action();
    } catch (const TError& error) {
        return error.text();
    }
    return QString();
}
