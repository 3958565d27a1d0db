#include "jString.h"

#include <cstdio>

jString jFormatV(const char* fmt, va_list args)
{
    char small[256];
    va_list copy;
    va_copy(copy, args);
    const int needed = std::vsnprintf(small, sizeof(small), fmt, copy);
    va_end(copy);
    if (needed < 0)
        return {};
    if (static_cast<size_t>(needed) < sizeof(small))
        return jString(small, static_cast<size_t>(needed));
    jString out(static_cast<size_t>(needed), '\0');
    std::vsnprintf(out.data(), out.size() + 1, fmt, args);
    return out;
}

jString jFormat(const char* fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    jString out = jFormatV(fmt, args);
    va_end(args);
    return out;
}

jVector<jString> jSplit(std::string_view text, char sep)
{
    jVector<jString> parts;
    size_t start = 0;
    while (start <= text.size()) {
        size_t end = text.find(sep, start);
        if (end == std::string_view::npos)
            end = text.size();
        if (end > start)
            parts.emplace_back(text.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

jString jJoin(const jVector<jString>& parts, std::string_view sep)
{
    jString out;
    for (size_t i = 0; i < parts.size(); ++i) {
        if (i > 0)
            out += sep;
        out += parts[i];
    }
    return out;
}
