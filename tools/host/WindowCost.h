#pragma once

#include "SessionThread.h"
#include "TurnLog.h"

#include <memory>
#include <optional>
#include <vector>

/** Prints what the module's window costs, as its host sees it, and ends the session. Nothing of the module is asked:
    its thread is watched from the program's side, and its painting from the X server's. */
class WindowCost final : private SessionThread
{
public:
    struct Plan
    {
        /** Per row of the table. */
        double seconds = 1.0;

        std::vector<float> scales;
        std::vector<int> layouts;

        /** Else the editor's first one. */
        std::optional<EditorSize> size;
    };

    /** `session`: without a window yet. `module`: for a second instance. */
    WindowCost (OpenSession& session, juce::File module, Plan plan);
    ~WindowCost() override;

private:
    void work() override;

    // The blocks of the table.
    void judgeOpening();
    void judgeLayouts (float scale);
    void judgeStrain();
    void judgeRest();

    /** Beside the window, as it is: what the module takes for a block of audio. */
    void judgeBlocks (const juce::String& state);

    void printOpening (const juce::String& title, OpenSession& opened);

    /** `meanwhile`: what is done until the time that it is given, first to warm up and then while it counts. */
    void printLoad (int layout, const juce::String& state, const juce::String& size,
                    const std::function<void (double end)>& meanwhile);
    void printLoad (int layout, const juce::String& state);
    /** By a step each `period`, in seconds. */
    void resizeUntil (double end, double period);

    void show (int layout);

    /** Of the sections in the layout. */
    void sweepThresholds (int layout);
    void stopSweep();

    const juce::File module;
    const Plan plan;
    const double warmUp;

    /** Rows that come last. */
    juce::StringArray blockRows;

    /** The layout with the most to show of those in the plan. */
    const int fullestLayout;

    // Made and deleted on the message thread.
    std::unique_ptr<TurnLog> log;
    std::unique_ptr<PluginHost> secondHost;
    std::unique_ptr<OpenSession> secondSession;

    JUCE_DECLARE_NON_COPYABLE (WindowCost)
};
