// lab_cloud: a cloud to which a switch can check in on a workstation.
#include "lab/program.h"

int main(int count, char** arguments) {
    return lab::run_program({arguments + 1, arguments + count});
}
