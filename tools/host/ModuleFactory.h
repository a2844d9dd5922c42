#pragma once

#include <juce_core/juce_core.h>

#include <vector>

/** A class that a module's factory lists. */
struct FactoryClass
{
    juce::String id, category, subCategories, name, vendor, version, sdkVersion;
    int cardinality = 0;
};

/** What a module's factory says of itself. JUCE's hosting keeps only a part of it. */
struct FactoryInfo
{
    juce::String vendor, url, email;
    int flags = 0;
    std::vector<FactoryClass> classes;
};

/** Loads the bundle's shared library by its three exports and reads the factory. Throws a Failure. */
[[nodiscard]] FactoryInfo readFactory (const juce::File& module);
