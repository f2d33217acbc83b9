#pragma once

#include "framework/files/FileException.h"

#include <gtest/gtest.h>

/// Runs `action`, which must raise a CFileException, and answers it.
template <class Action>
CFileException raisedBy(Action action) {
    try {
        action();
    } catch (const CFileException& exception) {
        return exception;
    }
    ADD_FAILURE() << "nothing was raised";
    return CFileException();
}
