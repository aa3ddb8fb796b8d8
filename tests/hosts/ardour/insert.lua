-- insert.lua FOLDER RATE [lv2=URI] [INDEX=VALUE ...]
-- A new session with one stereo track that has the plug-in on it, its
-- parameters set: the VST 2.4 plug-in, or the LV2 plug-in of this URI.
local folder, rate = arg[1], tonumber(arg[2])
local session = assert(create_session(folder, "session", rate))
local route
for track in session:new_audio_track(2, 2, nil, 1, "stereo", ARDOUR.PresentationInfo.max_order,
                                     ARDOUR.TrackMode.Normal, true):iter() do
  route = track
end
local first, name, kind = 3, "Dravik Mirelon", ARDOUR.PluginType.LXVST
if arg[3] and arg[3]:match("^lv2=") then
  first, name, kind = 4, arg[3]:sub(5), ARDOUR.PluginType.LV2
end
local effect = ARDOUR.LuaAPI.new_plugin(session, name, kind, "")
assert(not effect:isnil(), "the plug-in could not be made")
assert(route:add_processor_by_index(effect, 0, nil, true) == 0)
for i = first, #arg do
  local index, value = arg[i]:match("^(%d+)=(.*)$")
  assert(ARDOUR.LuaAPI.set_processor_param(effect, tonumber(index), tonumber(value)))
end
assert(session:save_state("") == 0)
route, effect, session = nil, nil, nil
collectgarbage()
close_session()
print("\nend of script")
