#pragma once

#include "core/OrvoAudioProcessor.h"
#include "Sheet.h"

/** All widgets. The processor gives parameters, curves and measured data, and must outlive the sheets. */
[[nodiscard]] std::vector<Sheet> makeSheets (OrvoAudioProcessor& processor);

/** The part of them that shows measured data. */
[[nodiscard]] std::vector<Sheet> makeGraphSheets (OrvoAudioProcessor& processor);
