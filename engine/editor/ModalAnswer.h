#pragma once

#include "ui/UIAutomation.h"

class UIRoot;

// How a modal window of the editor library gets its answer.
enum class ModalRoute {
    Answered, // the automation hook had an answer queued
    Refused, // no answer and no display: the window cancels (a warning was logged)
    Interactive, // a user answers on screen
};

// Takes the next queued automation answer for the modal window who (a qualified function name)
// titled title, or decides that no one can answer. app may be null (the live root is used).
ModalRoute modalRoute(UIRoot* app, const char* who, const char* title, UIAnswer& answer);
