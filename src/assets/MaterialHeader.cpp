#include "MaterialHeader.h"

#include "FileReader.h"
#include "PackageSyntax.h"

#include <fstream>
#include <vector>

namespace {

// A minimal reader of package text: tokens, statements and nesting, enough
// to find items by their package path. Malformed text ends the scan.
class HeaderScanner {
public:
    explicit HeaderScanner(std::string_view text) : m_text(text)
    {
        if (m_text.starts_with(PackageSyntax::kBom))
            m_text.remove_prefix(PackageSyntax::kBom.size());
    }

    MaterialHeader run()
    {
        while (m_pos < m_text.size() && !m_done) {
            const char c = m_text[m_pos];
            if (c == '\n' || c == ';') {
                endStatement();
                ++m_pos;
            } else if (PackageSyntax::has(c, PackageSyntax::kBlank)) {
                ++m_pos;
            } else if (c == '#' || m_text.substr(m_pos, 2) == "//") {
                skipComment();
            } else if (c == '{') {
                openPackage();
                ++m_pos;
            } else if (c == '}') {
                closePackage();
                ++m_pos;
            } else if (c == '"') {
                if (!readQuoted())
                    break;
            } else {
                readBare();
            }
        }
        endStatement();
        return m_header;
    }

private:
    bool inMaterial() const
    {
        return m_stack.size() == 2 && m_stack[0] == "materials" && m_stack[1] == "material";
    }

    void skipComment()
    {
        const size_t end = m_text.find('\n', m_pos);
        m_pos = end == std::string_view::npos ? m_text.size() : end;
    }

    void readBare()
    {
        const size_t start = m_pos;
        while (m_pos < m_text.size() && !PackageSyntax::has(m_text[m_pos], PackageSyntax::kValueStop))
            ++m_pos;
        m_tokens.emplace_back(m_text.substr(start, m_pos - start));
    }

    bool readQuoted()
    {
        jString value;
        for (++m_pos; m_pos < m_text.size(); ++m_pos) {
            char c = m_text[m_pos];
            if (c == '"') {
                ++m_pos;
                m_tokens.push_back(std::move(value));
                return true;
            }
            if (c == '\\' && m_pos + 1 < m_text.size()) {
                c = m_text[++m_pos];
                c = c == 'n' ? '\n' : c == 't' ? '\t' : c == 'r' ? '\r' : c;
            }
            value += c;
        }
        return false;
    }

    void openPackage()
    {
        // "key {" or a key on the line before a lone "{".
        jString key = !m_tokens.empty() ? m_tokens.front() : m_heldKey;
        m_tokens.clear();
        m_heldKey.clear();
        m_stack.push_back(std::move(key));
    }

    void closePackage()
    {
        endStatement();
        m_heldKey.clear();
        if (m_stack.empty()) {
            m_done = true;
            return;
        }
        // Only the first material is read.
        if (inMaterial())
            m_done = true;
        m_stack.pop_back();
    }

    void endStatement()
    {
        if (m_tokens.empty())
            return;
        if (m_tokens.size() == 1) {
            // A key alone may open a package on the next line.
            m_heldKey = m_tokens.front();
        } else if (inMaterial()) {
            m_heldKey.clear();
            takeItem(m_tokens[0], m_tokens[1]);
        }
        m_tokens.clear();
    }

    void takeItem(const jString& key, const jString& value)
    {
        if (key == "name" && m_header.name.empty())
            m_header.name = value;
        else if (key == "parent_path")
            m_header.parentPath = value;
        else if (key == "parent" && m_header.parentPath.empty())
            m_header.parentPath = value;
    }

    std::string_view m_text;
    size_t m_pos = 0;
    bool m_done = false;
    std::vector<jString> m_stack;
    std::vector<jString> m_tokens;
    jString m_heldKey;
    MaterialHeader m_header;
};

} // namespace

MaterialHeader MaterialHeader::scan(std::string_view text)
{
    return HeaderScanner(text).run();
}

bool MaterialHeader::read(const jString& absolutePath, MaterialHeader& out, jString& reason)
{
    // The probe refuses pipes and devices before anything opens them.
    if (FileReader::probe(absolutePath, FileReader::kDocumentLimit, reason) != FileReader::Status::Read)
        return false;
    std::ifstream file(absolutePath, std::ios::binary);
    if (!file) {
        reason = "can't open the file";
        return false;
    }
    jString text(kScanLimit, '\0');
    file.read(text.data(), std::streamsize(text.size()));
    text.resize(size_t(file.gcount()));
    out = scan(text);
    return true;
}
