#pragma once

#pragma clang assume_nonnull begin

typedef void (^dispatch_block_t)(void);

@protocol OS_dispatch_queue
@end
typedef id<OS_dispatch_queue> dispatch_queue_t;
@protocol OS_dispatch_queue_serial <OS_dispatch_queue>
@end
@protocol OS_dispatch_queue_main <OS_dispatch_queue_serial>
@end
typedef id<OS_dispatch_queue_main> dispatch_queue_main_t;

extern "C" {
dispatch_queue_main_t dispatch_get_main_queue(void);
void dispatch_async(dispatch_queue_t queue, dispatch_block_t block);
}

#pragma clang assume_nonnull end
