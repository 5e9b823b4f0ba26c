// What the standard streams are connected to: the one place that asks the system.
#pragma once

#include "diagnostic.h"

enum class Coloring { kAuto, kAlways, kNever };

/// How colours are wanted from now on. kAuto, with which the program begins: on a terminal, unless
/// the variable NO_COLOR is set or TERM is "dumb".
void ChooseColoring(Coloring coloring);

Style OutputStyle();
Style ErrorStyle();

bool IsInputTerminal();
bool IsOutputTerminal();
bool IsErrorTerminal();

/// Whether the terminal is more than a printer.
bool CanMoveCursor();

/// Whether standard output is a pipe that nobody reads any more. The program lives to ask: such a
/// pipe does not end it.
bool IsOutputClosed();
void SurviveClosedPipes();

/// From now on Ctrl-C ends no more than what waits for input; TakeInterrupt() tells whether there
/// was one since it was asked last.
void CatchInterrupts();
bool TakeInterrupt();

/// Gives one back that was taken by mistake.
void ReturnInterrupt();
