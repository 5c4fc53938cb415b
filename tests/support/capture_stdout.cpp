#include "tests/support/capture_stdout.h"

#include <iostream>

CaptureStdout::CaptureStdout() : saved_(std::cout.rdbuf(text_.rdbuf())) {}

CaptureStdout::~CaptureStdout() { std::cout.rdbuf(saved_); }
