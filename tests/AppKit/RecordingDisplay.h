#pragma once

/// A window system that notes what a window asks of it, and lets a test speak as the window system.

#include "AppKit/NSWindowBackend.h"

#include <string>
#include <vector>

struct RecordedWindow {
    NSWindowBackendClient* client = nullptr; ///< null once the window is gone
    std::vector<CGRect> presented;           ///< pixels, in the order they came
    std::vector<NSCursorShape> cursors;
    std::string calls;

    std::vector<CGRect> takePresented() { return std::exchange(presented, {}); }
};

class RecordingBackend final : public NSWindowBackend {
public:
    RecordingBackend(NSWindowBackendClient& client, RecordedWindow& record, CGFloat scale)
        : mRecord(record), mScale(scale)
    {
        mRecord.client = &client;
    }
    ~RecordingBackend() override { mRecord.client = nullptr; }
    void show() override { mRecord.client->backendFocusChanged(true); }
    void hide() override { mRecord.calls += "hide "; }
    void setTitle(const NSString*) override {}
    void setContentSize(NSSize) override {}
    CGFloat backingScale() const override { return mScale; }
    void present(CGContextRef, std::span<const CGRect> rects) override
    {
        mRecord.presented.insert(mRecord.presented.end(), rects.begin(), rects.end());
    }
    void setCursor(NSCursorShape shape) override { mRecord.cursors.push_back(shape); }
    void takeFocus() override { mRecord.calls += "focus "; }
    NSNativeWindow nativeWindow() const override { return 1; }
    NSRect screenFrame() const override { return {}; }

private:
    RecordedWindow& mRecord;
    CGFloat mScale;
};

class RecordingDisplay : public NSDisplay {
public:
    explicit RecordingDisplay(RecordedWindow& record, CGFloat scale = 1) : mRecord(record), mScale(scale) {}
    std::unique_ptr<NSWindowBackend> makeWindow(NSWindowBackendClient& client, const NSBackendWindowOptions&) override
    {
        return std::make_unique<RecordingBackend>(client, mRecord, mScale);
    }
    std::unique_ptr<NSWindowBackend> makePopUp(NSWindowBackendClient&, NSWindowBackend&, NSRect) override
    {
        return nullptr;
    }
    void setClipboardText(const NSString*) override {}
    void readClipboardText(std::function<void(const NSString*)> callback) override { callback(nullptr); }

private:
    RecordedWindow& mRecord;
    CGFloat mScale;
};
