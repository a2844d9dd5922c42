#pragma once

#include <juce_dsp/juce_dsp.h>

#include <benchmark/benchmark.h>

#include <string>

/** What the rows of the table share: one signal, one way of feeding it, and two readings. */
namespace bench
{
inline constexpr auto hostRate = 48000.0;
inline constexpr auto defaultBlockSize = 512;

/** Half a second of stereo that every curve has to work on: a sine 3 dB above full scale with noise over it.
    The same in every run. */
[[nodiscard]] const juce::AudioBuffer<float>& signal();

/** Plays the signal over and over into `work`, in blocks of its size. Every row pays for this copy; the row
    "copy" shows how much it is. */
class Feed
{
public:
    explicit Feed (int blockSize) : work (2, blockSize) {}

    /** The next block, to be processed in place. */
    juce::AudioBuffer<float>& next() noexcept;

private:
    juce::AudioBuffer<float> work;
    int position = 0;
};

/** Names of the readings: ns per stereo sample, and the multiple of real time at the host's rate. */
inline constexpr auto nsPerSample = "ns_per_sample";
inline constexpr auto timesRealTime = "times_real_time";

void addReadings (benchmark::State&, int blockSize);

/** Registers a row that calls `make()` once per measurement, and what that returned once per block. */
template <typename Make>
void addRow (const std::string& name, Make make, int blockSize = defaultBlockSize)
{
    benchmark::RegisterBenchmark (name.c_str(),
                                  [make, blockSize] (benchmark::State& state)
                                  {
                                      // As in the plug-in: tails of filters and envelopes end in denormals.
                                      const juce::ScopedNoDenormals noDenormals;
                                      auto process = make();
                                      Feed feed (blockSize);

                                      for (auto _ : state)
                                      {
                                          auto& block = feed.next();
                                          process (block);
                                          benchmark::DoNotOptimize (block.getReadPointer (0));
                                          benchmark::ClobberMemory();
                                      }

                                      addReadings (state, blockSize);
                                  });
}

void addSectionRows();
void addMeterRows();
void addChainRows();
} // namespace bench
