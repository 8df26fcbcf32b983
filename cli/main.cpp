#include "cli/app.h"

int main(int argc, char** argv) { return roadx::cli::Main(argc, argv); }
