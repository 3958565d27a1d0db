// A node's record in the editor file ("node" packages of the "blueprint").
#include "DataNode.h"

#include "AppData.h"
#include "Block.h"
#include "DataSampler.h"
#include "Package.h"

#include <string>

void DataNode::read(const Package& node)
{
    enum Field { Id, Name, X, Y, kFields };
    static constexpr std::string_view kNames[kFields] = { "id", "name", "pos_x", "pos_y" };
    const PackageItem* fields[kFields];
    node.findItems(kNames, fields);
    if (fields[Id])
        m_document->setNodeId(this, fields[Id]->getInt());
    if (fields[Name])
        setName(jString(fields[Name]->getValue()));
    if (fields[X])
        setPosX(fields[X]->getInt());
    if (fields[Y])
        setPosY(fields[Y]->getInt());

    if (const Package* variables = node.findPackage("variable")) {
        size_t items = 0;
        size_t packages = 0;
        for (const Package::EntryKind kind : variables->getOrder()) {
            if (kind == Package::EntryKind::Item) {
                const PackageItem& item = *variables->getItem(items++);
                if (item.getName() == "i")
                    read_variable_item(item);
            } else if (kind == Package::EntryKind::Package) {
                const Package& package = *variables->getPackage(packages++);
                if (package.getName() == "i")
                    read_variable_package(package);
            }
        }
    }
    if (const Package* links = node.findPackage("input_link"))
        for (size_t i = 0; i < links->getItemCount(); ++i)
            if (const PackageItem& link = *links->getItem(i); link.getName() == "i")
                setInputLinkValue(jString(link.getValue(0)), jString(link.getValue(1)));
    if (const Package* links = node.findPackage("output_link"))
        for (size_t i = 0; i < links->getItemCount(); ++i)
            if (const PackageItem& link = *links->getItem(i); link.getName() == "i")
                setOutputLinkValue(jString(link.getValue(0)), jString(link.getValue(1)));
}

// The short form: name, value, format, wrap, filter, asyn as positional
// values; the anisotropy is 1.
void DataNode::read_variable_item(const PackageItem& item)
{
    setVariableValue(getVariableIndex(jString(item.getValue(0))), jString(item.getValue(1)), jString(item.getValue(2)),
        jString(item.getValue(3)), jString(item.getValue(4)), 1, item.getBool(5));
}

void DataNode::read_variable_package(const Package& package)
{
    enum Field { Name, Value, Format, Wrap, Filter, Anisotropy, Asyn, kFields };
    static constexpr std::string_view kNames[kFields] = { "name", "value", "format", "wrap", "filter", "anisotropy",
        "asyn" };
    const PackageItem* fields[kFields];
    package.findItems(kNames, fields);
    const auto text = [&fields](Field field) {
        return fields[field] ? jString(fields[field]->getValue()) : jString();
    };
    const int index = getVariableIndex(text(Name));
    const bool set = setVariableValue(index, text(Value), text(Format), text(Wrap), text(Filter),
        fields[Anisotropy] ? static_cast<uint32_t>(fields[Anisotropy]->getInt()) : 1u,
        fields[Asyn] && fields[Asyn]->getBool());
    if (!set)
        return;
    DataVariable& variable = m_vars[index];
    for (size_t i = 0; i < package.getPackageCount(); ++i) {
        const Package& sub = *package.getPackage(i);
        if (sub.getName() != "sub")
            continue;
        if (DataVariable::Value* value = variable.findSubValue(jString(sub.getString("name"))))
            value->setValue(jString(sub.getString("value")));
    }
}

void DataNode::write(Package& blueprint) const
{
    Package& node = *blueprint.addPackage("node");
    // Room for every entry a node can write, so that the lists of these
    // small packages are allocated once instead of grown entry by entry.
    node.reserve(5, 3, 0);
    node.addItem("id", std::to_string(m_id));
    node.addItem("type", m_block->getType());
    if (!getName().empty())
        node.addItem("name", getName());
    if (getPosX() != 0)
        node.addItem("pos_x", std::to_string(getPosX()));
    if (getPosY() != 0)
        node.addItem("pos_y", std::to_string(getPosY()));
    if (!m_vars.empty()) {
        Package& variables = *node.addPackage("variable");
        variables.reserve(0, m_vars.size(), 0);
        for (const DataVariable& variable : m_vars)
            write_variable(variables, variable);
    }
    if (!m_inputLinks.empty()) {
        Package& links = *node.addPackage("input_link");
        links.reserve(m_inputLinks.size(), 0, 0);
        for (const DataAnchor& anchor : m_inputLinks)
            links.addItem("i", jVector<jString>{anchor.getName(), anchor.getLinkValue()});
    }
    if (!m_outputLinks.empty()) {
        Package& links = *node.addPackage("output_link");
        links.reserve(m_outputLinks.size(), 0, 0);
        for (const DataAnchor& anchor : m_outputLinks)
            links.addItem("i", jVector<jString>{anchor.getName(), anchor.getLinkValue()});
    }
}

void DataNode::write_variable(Package& variables, const DataVariable& variable) const
{
    Package& record = *variables.addPackage("i");
    record.reserve(variable.isTexture() ? 7 : 2, variable.getSubValueCount(), 0);
    if (!variable.getName().empty())
        record.addItem("name", variable.getName());
    if (!variable.getValue().empty())
        record.addItem("value", variable.getValue());
    if (variable.isTexture()) {
        const DataSampler* sampler = variable.getSampler();
        if (!variable.getFormat().empty())
            record.addItem("format", variable.getFormat());
        if (sampler && !sampler->getWrap().empty())
            record.addItem("wrap", sampler->getWrap());
        if (sampler && !sampler->getFilter().empty())
            record.addItem("filter", sampler->getFilter());
        if (variable.getAnisotropy() != 1 && variable.getAnisotropy() != 0)
            record.addItem("anisotropy", std::to_string(variable.getAnisotropy()));
        if (variable.getAsyn())
            record.addItem("asyn", "true");
    }
    for (size_t i = 0; i < variable.getSubValueCount(); ++i) {
        const DataVariable::Value& value = *variable.getSubValue(i);
        Package& sub = *record.addPackage("sub");
        sub.reserve(2, 0, 0);
        if (!value.getName().empty())
            sub.addItem("name", value.getName());
        if (!value.getValue().empty())
            sub.addItem("value", value.getValue());
    }
}
