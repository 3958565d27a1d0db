#include "PackageItem.h"

#include <cerrno>
#include <charconv>
#include <climits>
#include <cstdlib>
#include <strings.h>

namespace {
const jString kEmpty;

std::string_view trimLeadingSpace(std::string_view text)
{
    size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || text[i] == '\t'))
        ++i;
    return text.substr(i);
}
} // namespace

PackageItem::PackageItem(jString name, jString value)
    : m_name(std::move(name))
{
    m_values.push_back(std::move(value));
}

PackageItem::PackageItem(jString name, jVector<jString> values)
    : m_name(std::move(name))
    , m_values(std::move(values))
{
}

const jString& PackageItem::getValue(size_t index) const
{
    return index < m_values.size() ? m_values[index] : kEmpty;
}

int PackageItem::getInt(size_t index) const { return toInt(getValue(index)); }

float PackageItem::getFloat(size_t index) const { return toFloat(getValue(index)); }

bool PackageItem::getBool(size_t index) const { return toBool(getValue(index)); }

void PackageItem::setValue(jString value)
{
    m_values.clear();
    m_values.push_back(std::move(value));
}

int PackageItem::toInt(std::string_view text)
{
    text = trimLeadingSpace(text);
    bool negative = false;
    size_t i = 0;
    if (i < text.size() && (text[i] == '-' || text[i] == '+')) {
        negative = text[i] == '-';
        ++i;
    }
    long long value = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
        value = value * 10 + (text[i] - '0');
        if (value > static_cast<long long>(INT_MAX) + 1)
            value = static_cast<long long>(INT_MAX) + 1; // saturate, keep scanning
    }
    if (negative)
        value = -value;
    if (value > INT_MAX)
        value = INT_MAX;
    return static_cast<int>(value);
}

float PackageItem::toFloat(std::string_view text)
{
    text = trimLeadingSpace(text);
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    float value = 0.0f;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        // Keep strtof's answer (inf or a denormal) rather than 0.
        const jString copy(text);
        return std::strtof(copy.c_str(), nullptr);
    }
    return result.ec == std::errc() ? value : 0.0f;
}

bool PackageItem::toBool(std::string_view text)
{
    auto is = [&](const char* word) {
        return text.size() == std::char_traits<char>::length(word) && strncasecmp(text.data(), word, text.size()) == 0;
    };
    return is("1") || is("true") || is("yes") || is("on");
}
