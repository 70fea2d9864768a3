// A second process for the tests: takes the port named on its command line with the platform pipe,
// prints "listening" or "busy", and keeps the port until its standard input ends.
#include <iostream>
#include <string>

#include "NamedPipe.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: hubproxy_port_holder PORT-NAME\n";
        return 2;
    }
    NamedPipe pipe(argv[1], "com.bqlhub.nobody", [](unsigned char*, int) { return 0; });
    pipe.StartPipe();
    std::cout << (pipe.IsListening() ? "listening" : "busy") << std::endl;
    for (std::string line; std::getline(std::cin, line);) {
    }
    pipe.StopPipe();
    return 0;
}
