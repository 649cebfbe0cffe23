// Of Doomsday as the stand-in plays it, under the names by which others reach into the real one: a
// thread that loads, and the loop of events that waits for its end.
#pragma once

#include <functional>

void* startThread(
    std::function<int(void*)> work, void* parameter,
    void (*ended)(
        int status)) __asm__("_Z15Sys_StartThreadSt8functionIFiPvEES0_PFv21systhreadexitstatus_eE");

/// Waits until what `loop` points to, an atomic bool, is true, for a second at most.
int waitInLoop(void* loop,
               int flags) __asm__("_ZN10QEventLoop4execE6QFlagsINS_17ProcessEventsFlagEE");
