#include <gtest/gtest.h>

#include "PluginInstance.h"

namespace {

TEST(PluginLifetime, EachReleaseLetsTheNextGetInstanceBuildAFreshInstance) {
    for (int cycle = 1; cycle <= 3; ++cycle) {
        SCOPED_TRACE(cycle);
        PluginInstance instance;
        ASSERT_TRUE(instance.exists());
        EXPECT_EQ(BQLColloqPlugin::existingInstance(), &instance.plugin());
        // A fresh instance: the flag set by the previous cycle's check is false again.
        EXPECT_FALSE(instance.plugin().hostCanChangeDevice());
        ASSERT_EQ(instance.plugin().checkColloqVersion(), 0);
    }
    EXPECT_EQ(BQLColloqPlugin::existingInstance(), nullptr);
}

}  // namespace
