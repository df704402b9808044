// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
/// Plays the embedded service as the environment variable STANDIN_DO tells it.
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

int main(int argc, char **argv)
{
    const std::string folder = argc == 4 ? argv[3] : "";
    if (argc != 4 || argv[1] != std::string("--embedded") || argv[2] != std::string("--data"))
        return 2;
    const char *const wish = std::getenv("STANDIN_DO");
    const std::string manner = wish ? wish : "";
    std::cerr << "starting" << std::endl;
    if (manner == "dies")
        return 1;
    if (manner == "babbles")
        std::cout << "hello" << std::endl;
    else if (manner != "silent")
        std::cout << R"({"url":"http://127.0.0.1:5/","email":"me","hash":"h"})" << std::endl;
    for (int line = 0; manner == "floods" && line < 100000; ++line)
        std::cout << "far more than a pipe takes before somebody reads it\n";
    std::ofstream(folder + "/running").flush();
    if (manner != "crashes")
        std::cin.get(); // returns when the input is closed
    std::ofstream(folder + "/ended").flush();
    return 0;
}
