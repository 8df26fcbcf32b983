#include "cli/app.h"
#include "vesk/atomic_file.h"

int main(int argc, char** argv) {
    // Before anything is written: a write past the file-size limit fails
    // as an error instead of killing the program, and Ctrl-C or SIGTERM
    // removes the temporary files of unfinished outputs.
    vesk::ProtectWrites();
    return roadx::cli::Main(argc, argv);
}
