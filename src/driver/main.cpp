#include "driver/entry.h"
#include "driver/run.h"

int main(int argc, char** argv) { return pelkrin::entry(argc, argv, pelkrin::run); }
