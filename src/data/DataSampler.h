#pragma once

#include "jString.h"

#include <cstdint>

// One texture sampler of the document, shared by every variable that uses
// the same wrap mode, filter and anisotropy. Its shader name is "sampler_N".
class DataSampler {
public:
    DataSampler() = default;
    DataSampler(uint32_t index, jString wrap, jString filter, uint32_t anisotropy);

    // Virtual operations, in this order.
    virtual uint32_t getIndex() const { return m_index; }
    virtual void setIndex(uint32_t index) { m_index = index; }
    virtual const jString& getWrap() const { return m_wrap; }
    virtual void setWrap(const jString& wrap) { m_wrap = wrap; }
    virtual const jString& getFilter() const { return m_filter; }
    virtual void setFilter(const jString& filter) { m_filter = filter; }
    virtual uint32_t getAnisotropy() const { return m_anisotropy; }
    virtual void setAnisotropy(uint32_t anisotropy) { m_anisotropy = anisotropy; }

    virtual ~DataSampler() = default;

    // "sampler_%d" with the index.
    jString getName() const;

private:
    uint32_t m_index = 0;
    jString m_wrap;
    jString m_filter;
    uint32_t m_anisotropy = 0;
};
