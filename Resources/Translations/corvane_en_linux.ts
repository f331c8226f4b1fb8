<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- The English words that fit Linux better than the keys do, and no others. -->
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>corvane::AboutTab</name>
    <message>
        <source>Corvane taps you when Claude Code or Codex needs you.
It needs no account, keeps everything on the Mac and never goes online.</source>
        <translation>Corvane taps you when Claude Code or Codex needs you.
It needs no account, keeps everything on this computer and never goes online.</translation>
    </message>
    <message>
        <source>Small, careful Mac apps for people who work with AI agents.</source>
        <translation>Small, careful apps for people who work with AI agents.</translation>
    </message>
    <message>
        <source>More Mac apps ↗</source>
        <translation>More apps ↗</translation>
    </message>
</context>
<context>
    <name>corvane::AgentsTab</name>
    <message>
        <source>Show backup in Finder</source>
        <translation>Show backup in Files</translation>
    </message>
</context>
<context>
    <name>corvane::OnboardingView</name>
    <message>
        <source>When Claude Code is waiting for your approval or your reply — or finishes — you hear a sound and see a banner, even in a full-screen app. Lives in your menu bar.</source>
        <translation>When Claude Code is waiting for your approval or your reply — or finishes — you hear a sound and see a banner, even in a full-screen app. Lives in your system tray.</translation>
    </message>
</context>
</TS>
