#include "Commands.h"

const std::vector<Command>& allCommands()
{
    static const std::vector<Command> all { infoCommand(),     paramsCommand(),  renderCommand(),
                                            masterCommand(),   benchCommand(),   pictureCommand(),
                                            loudnessCommand(), presetsCommand(), stateCommand(),
                                            openCommand(),     documentCommand() };
    return all;
}
