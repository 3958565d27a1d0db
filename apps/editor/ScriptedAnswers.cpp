#include "ScriptedAnswers.h"

#include "jLog.h"

#include <QDialog>
#include <QMessageBox>

#include <cstdlib>
#include <memory>

std::unique_ptr<ScriptedAnswers> ScriptedAnswers::fromEnvironment()
{
    const char* answers = std::getenv(kVariable);
    if (!answers)
        return nullptr;
    return std::unique_ptr<ScriptedAnswers>(new ScriptedAnswers(answers));
}

ScriptedAnswers::ScriptedAnswers(const jString& answers)
{
    for (const jString& answer : jSplit(answers, ','))
        m_answers.push_back(answer);
}

void ScriptedAnswers::answerMessage(const jString& text, const jString& title)
{
    jLog::message("material-editor: %s: %s", title.c_str(), text.c_str());
}

bool ScriptedAnswers::answerFile(const DialogFileEx&, jString&)
{
    return false;
}

int ScriptedAnswers::answerDialog(QDialog&)
{
    if (m_answers.empty())
        return QMessageBox::Cancel;
    const jString answer = m_answers.front();
    m_answers.pop_front();
    jLog::message("material-editor: answered \"%s\"", answer.c_str());
    if (answer == "yes")
        return QMessageBox::Yes;
    if (answer == "no")
        return QMessageBox::No;
    if (answer == "save")
        return QMessageBox::Save;
    if (answer == "discard")
        return QMessageBox::Discard;
    return QMessageBox::Cancel;
}
