-- bounce.lua FOLDER FRAMES NAME
-- Loads the session, prints the plug-in's parameters, bounces the start of the
-- track behind the plug-in into NAME%L.wav and NAME%R.wav, and saves.
local folder, frames, name = arg[1], tonumber(arg[2]), arg[3]
local session = assert(load_session(folder, "session"))
local track = session:route_by_name("stereo"):to_track()
local effect = track:nth_plugin(0)
assert(effect:display_name() == "Dravik Mirelon")
for index = 0, 8 do
  print(string.format("parameter %d %.9g", index, (ARDOUR.LuaAPI.get_processor_param(effect, index))))
end
local region = track:bounce_range(0, frames, ARDOUR.InterThreadInfo(), effect, true, name)
assert(not region:isnil(), "nothing was bounced")
assert(session:save_state("") == 0)
region, effect, track, session = nil, nil, nil, nil
collectgarbage()
close_session()
print("\nend of script")
