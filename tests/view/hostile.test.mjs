import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { createHash } from 'node:crypto';
import { afterEach, beforeEach, describe, it } from 'node:test';
import { rows, shown, written } from './browser.mjs';
import { Data, hostile, varied } from './data.mjs';

let page;
let complaints;
beforeEach(async () => ({ page, complaints } = await shown('hostile', hostile())));
afterEach(() => assert.deepEqual(complaints, [], 'no dialog, no error, no request'));

/** What kinds of elements the page is made of. */
const tags = () => page.evaluate(() => Array.from(document.querySelectorAll('*'), (each) => each.tagName));

const kOwn = ['BODY', 'BUTTON', 'DD', 'DIV', 'DL', 'DT', 'H1', 'H2', 'H3', 'HEAD', 'HEADER', 'HTML', 'INPUT', 'LABEL',
    'LI', 'MAIN', 'META', 'NAV', 'NOSCRIPT', 'OL', 'OPTION', 'P', 'PRE', 'SCRIPT', 'SECTION', 'SELECT', 'SPAN', 'STYLE',
    'TABLE', 'TBODY', 'TD', 'TH', 'THEAD', 'TITLE', 'TR', 'UL', 'circle', 'ellipse', 'path', 'polyline', 'svg',
    'symbol', 'use'];

async function assertOwn() {
    for (const tag of await tags()) assert.ok(kOwn.includes(tag), tag);
    assert.equal(await page.locator('script').count(), 2);
    const attributes = await page.evaluate(() => [...document.querySelectorAll('*')].flatMap((each) =>
        each.getAttributeNames()));
    assert.deepEqual(attributes.filter((name) => name.startsWith('on') || name === 'src'), []);
}

describe('a store of hostile names and values', () => {
    it('shows them as text, in every place', async () => {
        await page.click('#expand');
        await page.evaluate(() => { document.getElementById('tree').scrollTop = 0; });
        for (const view of ['schemas', 'findings', 'about', 'item']) {
            await page.click('#tab-' + view);
            await assertOwn();
        }
        await page.locator('#tree').focus();
        await page.keyboard.press('Home');
        const count = hostile().json.level.length;
        for (let i = 0; i < count; ++i) {
            await page.keyboard.press('ArrowDown');
            if (i % 7 === 0) await assertOwn();
        }
        assert.ok((await rows(page)).some((name) => name.includes('&lt;b&gt;')));
    });

    it('shows them as text in every language and among what is found', async () => {
        const count = await page.locator('#language option').count();
        for (let index = 0; index < count; ++index) await page.selectOption('#language', { index });
        assert.ok(count > 15);
        await page.fill('#search', 'alert');
        await page.waitForFunction(() => document.getElementById('status').textContent.endsWith('found'));
        assert.ok(await page.locator('#results .line').count() > 5);
        await assertOwn();
    });

    it('shows controls, and what turns the direction of text, as escapes', async () => {
        const all = (await rows(page)).join('\n');
        assert.ok(all.includes('\\u202egnp.exe'));
        assert.ok(all.includes('\\u0000\\u001b[31m'));
        assert.ok(all.includes('\\u2066\\u200f\\u061c'));
        await page.click('#expand');
        const shownText = await page.evaluate(() => document.body.innerText);
        const bad = /.{0,40}[\0-\x08\x0b-\x1f\x7f-\x9f\u061c\u200e\u200f\u2028-\u202e\u2066-\u2069]/;
        assert.equal(bad.exec(shownText), null);
    });

    it('keeps its own title', async () => {
        assert.match(await page.title(), /^<img src=x onerror=/);
    });
});

describe('a page', () => {
    it('of which the data are broken says so', async () => {
        for (const text of ['', '{"level":[0', 'null', '{}']) {
            ({ page, complaints } = await shown('broken', text));
            assert.match(await page.locator('#panel').textContent(), /^The data in this page cannot be read: /);
        }
    });

    it('of more languages and schemas than a call takes arguments is shown', async () => {
        const data = new Data('numerous');
        const texts = {};
        for (let i = 0; i < 130000; ++i) texts['l' + i] = 'n';
        data.add(1, 'node', 'n', { base: Array.from({ length: 130000 }, (_, i) => 's' + i).join(';'), texts });
        data.json.schemas = [];
        data.json.conformance = [];
        ({ page, complaints } = await shown('numerous', data, { address: '#n' }));
        assert.equal(await page.locator('#language option').count(), 130001);
        assert.match(await page.locator('#panel dd').textContent(), /^s0; s1; .*s129999$/);
        await page.click('#tab-schemas');
        assert.equal(await page.locator('#panel section').count(), 20);
    });
});

describe('the policy of the page', () => {
    it('allows its own script and style by their hashes and nothing else', () => {
        const html = readFileSync(written('policy', varied()), 'utf8');
        const policy = /Content-Security-Policy" content="([^"]+)"/.exec(html)[1];
        const hash = (text) => 'sha256-' + createHash('sha256').update(text).digest('base64');
        const script = /<script>([^]*?)<\/script>/.exec(html)[1];
        const style = /<style>([^]*?)<\/style>/.exec(html)[1];
        assert.equal(policy, `default-src 'none'; script-src '${hash(script)}'; style-src '${hash(style)}'; ` +
            "base-uri 'none'; form-action 'none'");
    });

    it('stops a script, a style and a request that somebody has brought in', async () => {
        const got = await page.evaluate(() => {
            const script = document.createElement('script');
            script.textContent = 'window.taken = 1';
            document.body.append(script);
            document.body.insertAdjacentHTML('beforeend',
                '<p id="styled" style="color: red">x</p><img src="https://example.org/x">');
            return [window.taken, getComputedStyle(document.getElementById('styled')).color === 'rgb(255, 0, 0)'];
        });
        assert.deepEqual(got, [undefined, false]);
        const refused = complaints.filter((each) => /Content Security Policy/.test(each)).join('\n');
        for (const what of ['inline script', 'inline style', 'Loading the image']) {
            assert.ok(refused.includes(what), refused);
        }
        complaints.length = 0;
    });
});
