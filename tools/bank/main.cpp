// usage: orvo-bank OUTDIR
// Writes the factory presets into OUTDIR. Run it on the project's presets/ after each change of the table.

#include "BankWriter.h"
#include "core/OrvoAudioProcessor.h"
#include "scratch/TemporaryFolder.h"

#include <cstdio>

int main (int argc, char** argv)
{
    if (argc != 2)
    {
        std::fputs ("usage: orvo-bank OUTDIR\n", stderr);
        return 2;
    }

    const auto target =
        juce::File::getCurrentWorkingDirectory().getChildFile (juce::String::fromUTF8 (argv[1]));

    // A processor reads and writes the user's settings and log; these are not ours to touch.
    const TemporaryHome home;
    const juce::ScopedJuceInitialiser_GUI juceInitialiser;
    OrvoAudioProcessor processor;
    const auto result = factoryBank::writeBank (processor, target);

    if (result.failed())
        std::fprintf (stderr, "error: %s\n", result.getErrorMessage().toRawUTF8());

    return result.wasOk() ? 0 : 1;
}
