#include "JsonText.h"

jString JsonText::string(const jString& text)
{
    jString out = "\"";
    for (const unsigned char c : text) {
        switch (c) {
        case '"': out += "\\\""; break;
        case '\\': out += "\\\\"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\t': out += "\\t"; break;
        default:
            if (c < 0x20)
                out += jFormat("\\u%04x", c);
            else
                out += static_cast<char>(c);
        }
    }
    return out + "\"";
}

jString JsonText::stringOrNull(const jString& text)
{
    return text.empty() ? "null" : string(text);
}

jString JsonText::countOrNull(int64_t value)
{
    return value < 0 ? "null" : std::to_string(value);
}
