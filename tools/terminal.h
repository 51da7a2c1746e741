// What the standard streams are connected to.
#pragma once

namespace tavlyn {

// Whether standard input is typed by people.
bool InputIsTerminal();
// Whether people see standard output as it is written.
bool OutputIsTerminal();
// The same for standard error.
bool ErrorsAreOnTerminal();

// Whether these are terminals that obey colours.
bool OutputTakesColours();
bool ErrorsTakeColours();

// From now on a console shows names in all languages. A normal exit restores its settings.
void ShowAllLanguages();

}  // namespace tavlyn
