-- The message channel.
package.path = arg[0]:gsub("[^/]*$", "?.lua;") .. package.path
local check = require("check")

function testLevels()
  check.equal(vyr.NOTIFY_DEBUG, 0)
  check.equal(vyr.NOTIFY_INFO, 1)
  check.equal(vyr.NOTIFY_WARNING, 2)
  check.equal(vyr.NOTIFY_ERROR, 3)
end

function testTheLevelCanBeSet()
  local before = vyr.Notify:getLevel()
  vyr.Notify:setLevel(vyr.NOTIFY_ERROR)
  check.equal(vyr.Notify:getLevel(), vyr.NOTIFY_ERROR)
  vyr.Notify:info("this line is below the level and stays away")
  vyr.Notify:setLevel(before)
end

function testConfigurationScripts()
  local script = vyrCFG.ConfigScript()
  check.isFalse(script:isValid())
  check.isTrue(script:parse('{ "a": 1 }', "text"))
  check.equal(script:getName(), "text")
  check.isFalse(script:parse("{", "broken"))
  check.isFalse(vyrCFG.ConfigScript("no such file.json"):isValid())
end

check.run()
