#include "DataSampler.h"

#include <gtest/gtest.h>

TEST(DataSampler, NameCarriesTheIndex)
{
    DataSampler sampler(9, "clamp", "point", 4);
    EXPECT_EQ(sampler.getName(), "sampler_9");
    sampler.setIndex(12);
    EXPECT_EQ(sampler.getName(), "sampler_12");
}
