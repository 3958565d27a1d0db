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

const jString PackageItem::kNoComment;

PackageItem::PackageItem(jString name, jString value)
    : m_name(std::move(name))
    , m_first(std::move(value))
    , m_storage(Storage::First)
{
}

PackageItem::PackageItem(jString name, jVector<jString> values)
    : m_name(std::move(name))
{
    setValues(std::move(values));
}

PackageItem::PackageItem(const PackageItem& other)
    : m_name(other.m_name)
    , m_first(other.m_storage == Storage::First ? other.m_first : jString())
    , m_values(other.m_storage == Storage::List ? other.m_values : jVector<jString>())
    , m_storage(other.m_storage)
    , m_comment(other.m_comment ? std::make_unique<jString>(*other.m_comment) : nullptr)
{
}

PackageItem& PackageItem::operator=(const PackageItem& other)
{
    if (this != &other) {
        m_name = other.m_name;
        m_first = other.m_first;
        m_values = other.m_values;
        m_storage = other.m_storage;
        setComment(other.getComment());
    }
    return *this;
}

PackageItem::~PackageItem() = default;

// The comment string, once made, is kept, so a reference to it stays valid.
void PackageItem::setComment(jString comment)
{
    if (m_comment)
        *m_comment = std::move(comment);
    else if (!comment.empty())
        m_comment = std::make_unique<jString>(std::move(comment));
}

bool PackageItem::operator==(const PackageItem& other) const
{
    if (m_name != other.m_name || getValueCount() != other.getValueCount() || getComment() != other.getComment())
        return false;
    for (size_t i = 0; i < getValueCount(); ++i)
        if (getValue(i) != other.getValue(i))
            return false;
    return true;
}

size_t PackageItem::getValueCount() const
{
    switch (m_storage) {
    case Storage::None:
        return 0;
    case Storage::First:
        return 1;
    case Storage::List:
        break;
    }
    return m_values.size();
}

// The value in m_first is copied, not moved, so that a reference to it taken
// before stays valid.
const jVector<jString>& PackageItem::getValues() const
{
    if (m_storage != Storage::List) {
        m_values.clear();
        if (m_storage == Storage::First)
            m_values.push_back(m_first);
        m_storage = Storage::List;
    }
    return m_values;
}

const jString& PackageItem::getValue(size_t index) const
{
    if (m_storage == Storage::List)
        return index < m_values.size() ? m_values[index] : kEmpty;
    return index == 0 && m_storage == Storage::First ? m_first : kEmpty;
}

int PackageItem::getInt(size_t index) const { return toInt(getValue(index)); }

float PackageItem::getFloat(size_t index) const { return toFloat(getValue(index)); }

bool PackageItem::getBool(size_t index) const { return toBool(getValue(index)); }

void PackageItem::setValue(jString value)
{
    if (m_storage == Storage::List) {
        m_values.clear();
        m_values.push_back(std::move(value));
    } else {
        m_first = std::move(value);
        m_storage = Storage::First;
    }
}

// Once the values are in the list they stay there, so that the list returned
// by getValues() follows later changes.
void PackageItem::setValues(jVector<jString> values)
{
    if (m_storage == Storage::List || values.size() > 1) {
        m_values = std::move(values);
        m_storage = Storage::List;
    } else if (values.empty()) {
        m_storage = Storage::None;
    } else {
        m_first = std::move(values.front());
        m_storage = Storage::First;
    }
}

void PackageItem::addValue(jString value)
{
    switch (m_storage) {
    case Storage::None:
        m_first = std::move(value);
        m_storage = Storage::First;
        return;
    case Storage::First:
        m_values.clear();
        m_values.reserve(2);
        m_values.push_back(std::move(m_first));
        m_storage = Storage::List;
        break;
    case Storage::List:
        break;
    }
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
