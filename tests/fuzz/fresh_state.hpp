// Setting the sources back to how they are when the program starts.
#pragma once

// Gives every variable of the sources that outlasts a run the value that it has at the program's start, and
// releases what those variables own. Afterwards a run comes out as if it were the first one of the process.
void setStateBack();
