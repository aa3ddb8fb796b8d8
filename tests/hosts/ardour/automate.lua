-- automate.lua FOLDER INDEX[:PORT] MODE FRAME=VALUE ...
-- Loads the session, gives parameter INDEX these automation points, switches
-- its automation to MODE ("Play", "Touch", ...), and saves. Of an LV2 plug-in the
-- parameter's port is named as well.
local folder = arg[1]
local index, port = arg[2]:match("^(%d+):?(%d*)$")
index = tonumber(index)
port = tonumber(port) or index
local session = assert(load_session(folder, "session"))
local effect = session:route_by_name("stereo"):to_track():nth_plugin(0)
local automation, points = ARDOUR.LuaAPI.plugin_automation(effect, index)
for i = 4, #arg do
  local frame, value = arg[i]:match("^(%d+)=(.*)$")
  points:add(Temporal.timepos_t(tonumber(frame)), tonumber(value), false, true)
end
effect:to_automatable():automation_control(
  Evoral.Parameter(ARDOUR.AutomationType.PluginAutomation, 0, port), false)
  :set_automation_state(ARDOUR.AutoState[arg[3]])
assert(session:save_state("") == 0)
automation, points, effect, session = nil, nil, nil, nil
collectgarbage()
close_session()
print("\nend of script")
