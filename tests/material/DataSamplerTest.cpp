#include "DataSampler.h"
#include "DataVariable.h"
#include "DocumentFixture.h"

using DataVariableTest = DocumentTest;

TEST(DataSampler, NameCarriesTheIndex)
{
    DataSampler sampler(9, "clamp", "point", 4);
    EXPECT_EQ(sampler.getName(), "sampler_9");
    sampler.setIndex(12);
    EXPECT_EQ(sampler.getName(), "sampler_12");
}
