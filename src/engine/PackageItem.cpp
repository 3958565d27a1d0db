#include "PackageItem.h"

#include "PackageStore.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cstdlib>
#include <strings.h>

namespace {
std::string_view trimLeadingSpace(std::string_view text)
{
    size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || text[i] == '\t'))
        ++i;
    return text.substr(i);
}
} // namespace

void PackageItem::setName(std::string_view name) { m_name = m_store->copyText(name); }

void PackageItem::setComment(std::string_view comment) { m_comment = m_store->copyText(comment); }

void PackageItem::reserveValues(size_t count)
{
    if (count <= m_valueCapacity)
        return;
    const auto capacity = static_cast<uint32_t>(std::max<size_t>(count, 2 * m_valueCapacity));
    auto* values = m_store->allocateArray<std::string_view>(capacity);
    std::copy_n(m_values, m_valueCount, values);
    m_values = values;
    m_valueCapacity = capacity;
}

void PackageItem::setValue(std::string_view value)
{
    const std::string_view stored = m_store->copyText(value);
    reserveValues(1);
    m_values[0] = stored;
    m_valueCount = 1;
}

// The new values may be views of the current ones: they are copied into new
// room before the item lets go of the old list.
template <typename Texts>
void PackageItem::storeValues(const Texts& values)
{
    auto* stored = m_store->allocateArray<std::string_view>(values.size());
    for (size_t i = 0; i < values.size(); ++i)
        stored[i] = m_store->copyText(values[i]);
    adoptValues(stored, static_cast<uint32_t>(values.size()));
}

void PackageItem::setValues(std::span<const std::string_view> values) { storeValues(values); }

void PackageItem::setValues(const jVector<jString>& values) { storeValues(values); }

void PackageItem::addValue(std::string_view value)
{
    const std::string_view stored = m_store->copyText(value);
    reserveValues(m_valueCount + 1);
    m_values[m_valueCount++] = stored;
}

bool PackageItem::operator==(const PackageItem& other) const
{
    return m_name == other.m_name && m_comment == other.m_comment
        && std::equal(m_values, m_values + m_valueCount, other.m_values, other.m_values + other.m_valueCount);
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
