#pragma once

#pragma clang assume_nonnull begin

typedef void (^dispatch_block_t)(void);

@protocol OS_dispatch_queue;
typedef id<OS_dispatch_queue> dispatch_queue_t;

extern "C" {
dispatch_queue_t dispatch_get_main_queue(void);
void dispatch_async(dispatch_queue_t queue, dispatch_block_t block);
}

#pragma clang assume_nonnull end
