-- points.lua FOLDER INDEX
-- Loads the session and prints the values of parameter INDEX's automation points,
-- one after another.
local folder, index = arg[1], tonumber(arg[2])
local session = assert(load_session(folder, "session"))
local effect = session:route_by_name("stereo"):to_track():nth_plugin(0)
local automation, points = ARDOUR.LuaAPI.plugin_automation(effect, index)
for event in points:events():iter() do
  print(string.format("point %.9g", event.value))
end
automation, points, effect, session = nil, nil, nil, nil
collectgarbage()
close_session()
print("\nend of script")
