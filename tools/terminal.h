// What the standard streams lead to.
#pragma once

namespace tavlyn {

// Whether people type the standard input.
bool InputIsTerminal();
// Whether people see the standard output as it comes.
bool OutputIsTerminal();
// The same of the standard error.
bool ErrorsAreOnTerminal();

// From now on a console shows names in all languages. An ordinary end brings back what it was set to.
void ShowAllLanguages();

}  // namespace tavlyn
