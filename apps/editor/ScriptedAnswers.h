#pragma once

#include "DialogAnswerer.h"

#include <deque>
#include <memory>

// Test-only: when the environment variable MATERIAL_EDITOR_TEST_ANSWERS
// holds a comma-separated list of answers ("yes", "no", "save", "discard",
// "cancel"), the program's questions take them in order instead of waiting
// for a user; a question with no answer left is cancelled. Message boxes
// are logged. See docs/material-editor.md.
class ScriptedAnswers : public DialogAnswerer {
public:
    static constexpr const char* kVariable = "MATERIAL_EDITOR_TEST_ANSWERS";

    // Null when the variable is not set.
    static std::unique_ptr<ScriptedAnswers> fromEnvironment();

    void answerMessage(const jString& text, const jString& title) override;
    bool answerFile(const DialogFileEx& dialog, jString& path) override;
    int answerDialog(QDialog& dialog) override;

private:
    explicit ScriptedAnswers(const jString& answers);

    std::deque<jString> m_answers;
    Scope m_scope{*this};
};
