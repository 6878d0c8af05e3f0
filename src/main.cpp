// SPDX-License-Identifier: GPL-3.0-or-later

#include "Application.h"

int main(int argc, char **argv)
{
    return quillhaven::runApplication(argc, argv);
}
