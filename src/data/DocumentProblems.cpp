#include "DocumentProblems.h"

#include "AppData.h"

#include <algorithm>

namespace {

bool sameEntry(const DocumentProblems::Entry& a, const DocumentProblems::Entry& b)
{
    return a.nodeId == b.nodeId && a.line == b.line && a.warning == b.warning && a.nodeType == b.nodeType
        && a.message == b.message;
}

bool sameEntries(const jVector<DocumentProblems::Entry>& a, const jVector<DocumentProblems::Entry>& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), sameEntry);
}

} // namespace

void DocumentProblems::afterLoad(const jString& path, const AppData& document)
{
    m_file.clear();
    m_shader.clear();
    if (document.getBlockManager()) {
        DocumentChecker checker;
        checker.checkFileGraph(path, *document.getBlockManager());
        m_file = checker.nodeProblems();
    }
    check_structure(document);
    rebuild();
}

void DocumentProblems::afterEdit(const AppData& document)
{
    check_structure(document);
    rebuild();
}

void DocumentProblems::afterSave(const AppData& document)
{
    m_file.clear();
    afterEdit(document);
}

void DocumentProblems::setShaderProblems(jVector<Entry> problems)
{
    m_shader = std::move(problems);
    rebuild();
}

void DocumentProblems::compile(const AppData& document, const ShaderValidator& validator)
{
    DocumentChecker checker;
    checker.setValidator(validator);
    checker.checkPrograms(document);
    setShaderProblems(checker.nodeProblems());
}

void DocumentProblems::clear()
{
    m_file.clear();
    m_structure.clear();
    m_shader.clear();
    rebuild();
}

bool DocumentProblems::hasStructureErrors() const
{
    return std::any_of(m_structure.begin(), m_structure.end(), [](const Entry& entry) { return !entry.warning; });
}

jString DocumentProblems::messagesOf(int32_t id) const
{
    const auto found = m_byNode.find(id);
    if (found == m_byNode.end())
        return {};
    jString text;
    for (const size_t at : found->second)
        text += (text.empty() ? "" : "\n") + m_entries[at].message;
    return text;
}

void DocumentProblems::check_structure(const AppData& document)
{
    DocumentChecker checker;
    checker.checkDocument(document);
    m_structure = checker.nodeProblems();
}

void DocumentProblems::rebuild()
{
    jVector<Entry> entries;
    entries.reserve(m_file.size() + m_structure.size() + m_shader.size());
    for (const jVector<Entry>* part : {&m_file, &m_structure, &m_shader})
        entries.insert(entries.end(), part->begin(), part->end());
    if (sameEntries(entries, m_entries))
        return;
    m_entries = std::move(entries);
    m_byNode.clear();
    for (size_t i = 0; i < m_entries.size(); ++i) {
        if (m_entries[i].nodeId >= 0)
            m_byNode[m_entries[i].nodeId].push_back(i);
    }
    ++m_serial;
}
