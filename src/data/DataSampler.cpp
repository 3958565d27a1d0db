#include "DataSampler.h"

DataSampler::DataSampler(uint32_t index, jString wrap, jString filter, uint32_t anisotropy)
    : m_index(index)
    , m_wrap(std::move(wrap))
    , m_filter(std::move(filter))
    , m_anisotropy(anisotropy)
{
}

jString DataSampler::getName() const
{
    return jFormat("sampler_%d", static_cast<int>(m_index));
}
