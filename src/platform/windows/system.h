// The system's headers.
#pragma once

#include <winsock2.h>

// winsock2.h has to come first.
#include <windows.h>
