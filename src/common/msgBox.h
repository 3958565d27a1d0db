#pragma once

#include "jString.h"

class QWidget;

// Tells the user about a problem and waits for OK: a message box with the
// title's icon ("Warning" a warning sign, "Error" a critical one, any other
// title an information sign). With a DialogAnswerer installed, it is asked
// instead.
void msgBox(const jString& text, const jString& title, QWidget* parent = nullptr);
