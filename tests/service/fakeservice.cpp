// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
// Takes the place of teko-service in tests. FAKE_DO says how it behaves.
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

int main(int argc, char **argv)
{
    if (argc != 4 || argv[1] != std::string("--embedded") || argv[2] != std::string("--data"))
        return 2;
    const char *const value = std::getenv("FAKE_DO");
    const std::string behaviour = value ? value : "";
    std::cerr << "starting" << std::endl;
    if (behaviour == "prints garbage")
        std::cout << "hello" << std::endl;
    else
        std::cout << R"({"url":"http://127.0.0.1:5/","email":"me","hash":"h"})" << std::endl;
    for (int line = 0; behaviour == "floods" && line < 100000; ++line)
        std::cout << "far more than a pipe takes before somebody reads it\n";
    const std::string mark = std::string(argv[3]) + "/crashed";
    if (behaviour == "crashes" || (behaviour == "crashes once" && !std::ifstream(mark))) {
        std::ofstream(mark).flush();
        return 1;
    }
    std::cin.get(); // returns when the input is closed
    if (behaviour != "prints garbage")
        std::cerr << "ending" << std::endl;
    return 0;
}
