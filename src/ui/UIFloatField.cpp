#include "UIFloatField.h"

#include "jLog.h"

#include <QSignalBlocker>

#include <charconv>
#include <cmath>

namespace {

bool parseNumber(const jString& text, size_t begin, size_t end, float& value)
{
    while (begin < end && (text[begin] == ' ' || text[begin] == '\t'))
        ++begin;
    while (end > begin && (text[end - 1] == ' ' || text[end - 1] == '\t'))
        --end;
    if (begin == end)
        return false;
    if (text[begin] == '+')
        ++begin;
    const char* first = text.data() + begin;
    const char* last = text.data() + end;
    auto [stop, error] = std::from_chars(first, last, value);
    return error == std::errc() && stop == last && std::isfinite(value);
}

} // namespace

UIFloatField::UIFloatField(QWidget* parent, Getter getter, Setter setter)
    : QLineEdit(parent), m_getter(std::move(getter)), m_setter(std::move(setter))
{
    refresh();
    connect(this, &QLineEdit::editingFinished, this, [this] { commit(); });
}

void UIFloatField::refresh()
{
    const QSignalBlocker quiet(this);
    setText(m_getter ? QString::fromStdString(m_getter()) : QString());
    setCursorPosition(0);
}

bool UIFloatField::parse(const jString& text, std::vector<float>& numbers)
{
    numbers.clear();
    size_t begin = 0;
    while (numbers.size() < kMaxComponents) {
        const size_t comma = text.find(',', begin);
        const size_t end = comma == jString::npos ? text.size() : comma;
        float value = 0.0f;
        if (!parseNumber(text, begin, end, value))
            return false;
        numbers.push_back(value);
        if (comma == jString::npos)
            return true;
        begin = comma + 1;
    }
    return false;
}

jString UIFloatField::format(const std::vector<float>& numbers)
{
    jString text;
    char buffer[32];
    for (size_t i = 0; i < numbers.size(); ++i) {
        if (i > 0)
            text += ',';
        // -0 reads as 0 in every consumer; it is written as such.
        const float value = numbers[i] == 0.0f ? 0.0f : numbers[i];
        auto [end, error] = std::to_chars(buffer, buffer + sizeof(buffer), value);
        text.append(buffer, error == std::errc() ? end : buffer);
    }
    return text;
}

void UIFloatField::commit()
{
    if (isReadOnly() || !m_setter)
        return;
    const jString typed = text().toStdString();
    const jString current = m_getter ? m_getter() : jString();
    std::vector<float> numbers;
    std::vector<float> currentNumbers;
    if (!parse(current, currentNumbers))
        currentNumbers.clear();
    const bool fits = parse(typed, numbers) && (currentNumbers.empty() || numbers.size() == currentNumbers.size());
    if (!fits) {
        const size_t wanted = currentNumbers.size();
        const jString what = wanted > 1 ? jFormat("a list of %zu numbers", wanted) : jString("a number");
        jLog::warning("%s: \"%s\" is not %s, the value stays %s", "UIFloatField::commit", typed.c_str(), what.c_str(),
                      current.c_str());
        refresh();
        return;
    }
    const jString value = format(numbers);
    if (value != current)
        m_setter(value);
    refresh();
}
