<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" sourcelanguage="en">
<context>
    <name>MenuBarLabel</name>
    <message>
        <source>%1 agent waiting for you</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 agents waiting for you</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::AboutTab</name>
    <message>
        <source>Corvane %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Corvane taps you when Claude Code or Codex needs you.
It needs no account, keeps everything on the Mac and never goes online.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Website</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Contact</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>From the same maker</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Small, careful Mac apps for people who work with AI agents.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>More Mac apps ↗</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::AgentCard</name>
    <message>
        <source>Connect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Codex</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Claude Code</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connected</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Alerts when Codex finishes a turn. %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Adds one notify line to %1. Codex only reports when it finishes, not approvals.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Alerts when Claude waits for approval, waits for your reply, or finishes. %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Adds a small hook to %1. A backup is saved first; Remove puts it back.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::AgentsTab</name>
    <message>
        <source>Show backup in Finder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Try a test alert</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::AlertsTab</name>
    <message>
        <source>Alert when an agent finishes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open Corvane at login</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Play sounds</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Waiting sound</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Finished sound</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Off</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Every %1 min</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remind me again</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quiet for 1 hour</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::DoneBanner</name>
    <message>
        <source>Close</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::MainWindow</name>
    <message>
        <source>Corvane</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Window</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::MenuBarView</name>
    <message>
        <source>Corvane</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Custom feature? Contact us</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connect an agent and Corvane will tap you when it needs you.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connect Claude Code</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No agents running. Start Claude Code and Corvane will tap you when it needs you.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Resume</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quiet for 1 hour</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quiet until %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::OnboardingView</name>
    <message>
        <source>Corvane taps you when your agent needs you.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>When Claude Code is waiting for your approval or your reply — or finishes — you hear a sound and see a banner, even in a full-screen app. Lives in your menu bar.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Try a test alert</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Need a custom feature? Contact us</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Done</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::SettingsView</name>
    <message>
        <source>Agents</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Alerts</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>About</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::SettingsWindow</name>
    <message>
        <source>Corvane Settings</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::TrayMenu</name>
    <message>
        <source>Open Corvane</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quiet for 1 hour</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Resume</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quit</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::TrayPanel</name>
    <message>
        <source>Corvane</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::WaitingBanner</name>
    <message>
        <source>Go to Terminal</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Snooze</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>waiting %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::WindowCommands</name>
    <message>
        <source>Corvane</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sessions</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
