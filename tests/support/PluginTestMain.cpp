#include "scratch/TemporaryFolder.h"
#include "ScreenLibraries.h"

#include <juce_events/juce_events.h>

#include <gtest/gtest.h>
#include <malloc.h>

int main (int argc, char** argv)
{
    const TemporaryHome home;

    // What was freed holds no address any more, so that whoever is called after its end crashes here.
    mallopt (M_PERTURB, 0x5a);

    keepScreenLibrariesLoaded();
    testing::InitGoogleTest (&argc, argv);
    const juce::ScopedJuceInitialiser_GUI juceInitialiser;
    return RUN_ALL_TESTS();
}
