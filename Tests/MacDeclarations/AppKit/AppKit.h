#pragma once

#import <AppKit/Application.h>
#import <AppKit/Image.h>
#import <AppKit/View.h>
#import <AppKit/Window.h>
#import <Foundation/Foundation.h>
